"""The ways the program is started."""

from __future__ import annotations

import pathlib
import shutil
import time

import clips
import pytest
from player import PLAYING, REMOTE, VIDEO, Player
from stage import windows_path
from waiting import until

BOUNDS = [f"Text{number}" for number in range(1, 7)]


def shows_no_window(player: Player, command_line: str = "") -> None:
    player.start(command_line)
    assert not windows_of_the_program(player)
    assert player.ended() == 0
    assert not windows_of_the_program(player)


def windows_of_the_program(player: Player) -> list[list[str]]:
    return [row for row in player.ctl.ask("list") if row[2].startswith("nqp.")]


def copy_of_clip(folder: pathlib.Path, name: str) -> pathlib.Path:
    target = folder / name
    shutil.copy(clips.path("mpeg4-mp3.avi"), target)
    return target


def opens(player: Player, command_line: str) -> None:
    player.start_and_show(command_line)
    until(lambda: player.playback().duration > 0, 20, "the clip is loaded")


def test_first_start_without_marker_only_creates_it(player: Player) -> None:
    player.folder.set_marker(None)
    shows_no_window(player)
    assert player.folder.marker() == b"0"


def test_second_start_shows_both_windows(player: Player) -> None:
    player.folder.set_marker(None)
    shows_no_window(player)
    player.start_and_show()


def test_empty_marker_counts_as_automation_start(player: Player) -> None:
    player.folder.set_marker(b"")
    shows_no_window(player)
    assert player.folder.marker() == b"0"


def test_marker_of_automation_start_is_set_back(player: Player) -> None:
    player.folder.set_marker(b"1")
    shows_no_window(player)
    assert player.folder.marker() == b"0"


def test_automation_start_that_no_client_uses_ends_by_itself(player: Player) -> None:
    player.folder.set_marker(b"1")
    started = time.monotonic()
    shows_no_window(player, "-Embedding")
    assert time.monotonic() - started > 5, "it gives a client time to come"
    assert player.folder.marker() == b"0"


def test_plain_start_leaves_the_marker(player: Player) -> None:
    player.start_and_show()
    assert player.folder.marker() == b"0"
    assert player.playback().position == -1


def test_hidden_start_loads_both_windows_unseen(player: Player) -> None:
    player.start("/START")
    for window in (VIDEO, REMOTE):
        player.wait(window, "exists")
    player.ctl.ask("text", f"{REMOTE}@{player.process}")  # its window thread answers
    for window in (VIDEO, REMOTE):
        assert player.is_in(window, "hidden")


def test_switch_in_lower_case_is_a_file_name(player: Player) -> None:
    player.start_and_show("/start")
    assert player.text(REMOTE, "Label1") == "/start"
    assert player.playback().duration == 0


def test_clip_on_the_command_line(player: Player, tmp_path: pathlib.Path) -> None:
    opens(player, windows_path(copy_of_clip(tmp_path, "movie.part1.avi")))
    assert player.text(REMOTE, "Label1") == "movie"
    assert [player.text(REMOTE, bound) for bound in BOUNDS] == ["00"] * 6
    until(lambda: player.playback().state == PLAYING, 5, "it plays by itself")


def test_clip_waits_when_autostart_is_off(player: Player, tmp_path: pathlib.Path) -> None:
    player.folder.set_options({4: "0"})
    opens(player, windows_path(copy_of_clip(tmp_path, "waits.avi")))
    assert player.playback().state != PLAYING
    assert player.playback().ready != 0


@pytest.mark.parametrize(
    "name",
    [
        "two words and  more.avi",
        "影片 测试.avi",
        "no_dot_at_all",
        "very long " + "x" * 200 + ".avi",
    ],
)
def test_file_names(player: Player, tmp_path: pathlib.Path, name: str) -> None:
    opens(player, windows_path(copy_of_clip(tmp_path, name)))
    assert player.text(REMOTE, "Label1") == name.split(".")[0]


def test_quoted_path(player: Player, tmp_path: pathlib.Path) -> None:
    clip = copy_of_clip(tmp_path, "in quotes.avi")
    opens(player, f'"{windows_path(clip)}"')
    assert player.text(REMOTE, "Label1") == "in quotes"


def test_path_of_more_than_260_characters(player: Player, tmp_path: pathlib.Path) -> None:
    deep = tmp_path / ("folder " * 20).strip() / ("another " * 18).strip()
    deep.mkdir(parents=True)
    clip = copy_of_clip(deep, "deep.avi")
    assert len(windows_path(clip)) > 260
    opens(player, windows_path(clip))
    assert player.text(REMOTE, "Label1") == "deep"


@pytest.mark.parametrize("name", ["missing.avi", "empty.avi", "text.avi", "folder.avi"])
def test_what_cannot_be_played_loads_nothing(player: Player, name: str) -> None:
    player.start_and_show(windows_path(clips.FOLDER / name))
    playback = player.playback()
    assert (playback.position, playback.duration, playback.ready) == (-1, 0, 0)
    assert not [row for row in player.ctl.ask("list") if row[2] == "#32770"]
