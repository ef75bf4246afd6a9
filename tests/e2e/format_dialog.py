"""The real companion's question in which format a fragment is to be cut, and what it has cut."""

from __future__ import annotations

import json
import pathlib
import subprocess

from player import Player
from windowmap import control_id

DIALOG = "nqp.FormatDialog"
JOB_SECONDS = 20


def wait_for_dialog(player: Player, state: str) -> None:
    player.ctl.ask("wait", DIALOG, state, JOB_SECONDS, seconds=JOB_SECONDS + 10)


def press(player: Player, control: str) -> None:
    player.ctl.ask("click", DIALOG, control_id(DIALOG, control))


def answer(player: Player, *controls: str) -> None:
    """Presses these controls of the format dialog."""
    wait_for_dialog(player, "visible")
    for control in controls:
        press(player, control)
    wait_for_dialog(player, "gone")


def probe(path: pathlib.Path) -> dict[str, dict[str, str]]:
    """The streams of a file by their kind."""
    command = ["ffprobe", "-v", "error", "-show_streams", "-of", "json", str(path)]
    done = subprocess.run(command, capture_output=True, text=True, check=True)
    return {stream["codec_type"]: stream for stream in json.loads(done.stdout)["streams"]}
