"""What the settings file does at the start, and what is kept in it at the end."""

from __future__ import annotations

import pytest
from player import REMOTE, SILENT, VIDEO, Player
from pointer import Pointer
from screen import Rect

GEOMETRY = {1: "1", 23: "1500", 24: "2250", 25: "6000", 26: "4500", 28: "3000", 29: "9000"}


def test_geometry_is_remembered(player: Player, pointer: Pointer) -> None:
    player.folder.set_options(GEOMETRY)
    player.start_and_show()
    player.wait_for_rect(Rect(100, 150, 400, 300), tolerance=0)
    remote = player.rect(REMOTE)
    assert (remote.left, remote.top) == (200, 600)

    start = Rect(100, 150, 400, 300).point(0.5, 0.3)
    pointer.drag(start, (start[0] + 40, start[1] + 30))
    player.wait_for_rect(Rect(140, 180, 400, 300))
    moved = player.rect(VIDEO)
    player.close()
    saved = [player.folder.option(number) for number in (23, 24, 25, 26)]
    edges = (moved.left, moved.top, moved.width, moved.height)
    assert saved == [str(edge * 15) for edge in edges]


def test_geometry_is_left_alone_without_the_flag(player: Player) -> None:
    player.folder.set_options({**GEOMETRY, 1: "0"})
    player.start_and_show()
    player.wait_for_rect(Rect(206, 67, 344, 257), tolerance=0)
    player.close()
    assert player.folder.option(23) == "1500"


def test_empty_settings_stay_empty(player: Player) -> None:
    player.folder.options_file.write_bytes(b"")
    player.start_and_show()
    player.close()
    assert player.folder.options_file.read_bytes() == b""


def test_missing_settings_are_created_empty(player: Player) -> None:
    player.folder.options_file.unlink()
    player.start_and_show()
    player.close()
    assert player.folder.options_file.read_bytes() == b""


@pytest.mark.parametrize("flag", ["0", "1"])
def test_always_on_top(player: Player, flag: str) -> None:
    player.folder.set_options({2: flag})
    player.start_and_show()
    assert [player.is_topmost(window) for window in (VIDEO, REMOTE)] == [flag == "1"] * 2


@pytest.mark.parametrize(
    ("knob", "lowest", "highest"),
    [("0", 0, 0), ("99999", SILENT, SILENT), ("400", -2499, -1)],
)
def test_volume_at_the_start(player: Player, knob: str, lowest: int, highest: int) -> None:
    player.folder.set_options({22: knob})
    player.start_and_show()
    assert lowest <= player.playback().volume <= highest


def test_volume_is_saved_at_the_end(player: Player) -> None:
    player.folder.set_options({22: "400"})
    player.start_and_show()
    player.close()
    assert player.folder.option(22) == "400"


def test_records_without_a_number_keep_the_defaults(player: Player) -> None:
    player.folder.set_options({1: "yes", 2: "", 3: "x", 4: "-", 5: "", 6: "", 22: "loud"})
    player.start_and_show()
    player.wait_for_rect(Rect(206, 67, 344, 257), tolerance=0)
    assert player.playback().volume == 0
