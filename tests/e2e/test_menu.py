"""The context menu over the video, its commands, and the dialogs it opens."""

from __future__ import annotations

import shutil

import clips
import pytest
from conftest import Desk
from player import (
    FILE_DIALOG,
    FULL_SCREEN,
    IN_WINDOW,
    MENU,
    PAUSED,
    PLAY_RATE,
    PLAYING,
    REMOTE,
    SET_RATE,
    SET_VOLUME,
    SILENT,
    STATISTICS,
    Player,
)
from pointer import LEFT, RIGHT, Pointer
from waiting import until
from windowmap import control_id

CAPTIONS = [
    "Play",
    "Pause",
    "Open ...",
    "Fullscreen",
    "",
    "Show control",
    "Options",
    "Standard settings",
    "Statistics",
    "Playrate",
    "Mute",
    "Exit",
]
SCREEN_SIZE = (1280, 1024)


def open_in_sight(player: Player) -> None:
    player.open()
    player.show_picture()


@pytest.fixture
def playing(desk: Desk) -> Player:
    """The clip plays in sight and no menu or dialog is open."""
    shared = desk.shared("menu", open_in_sight)
    for window in (MENU, PLAY_RATE, STATISTICS):
        assert shared.is_in(window, "gone")
    shared.media(SET_RATE, 1000)
    shared.media(SET_VOLUME, 0)
    shared.seek(0)
    if shared.playback().state != PLAYING:
        shared.play()
    return shared


def test_menu_opens_at_the_pointer(playing: Player) -> None:
    x, y = playing.client().point(0.25, 0.5)
    playing.open_menu((x, y))
    menu = playing.rect(MENU)
    assert abs(menu.left - x) <= 1 and abs(menu.top - y) <= 1
    assert playing.is_topmost(MENU)
    playing.pointer.key("Escape")
    playing.wait(MENU, "gone")
    assert playing.playback().visible == 1


def test_menu_has_its_twelve_labels(playing: Player) -> None:
    playing.open_menu()
    rows = playing.ctl.ask("tree", f"{MENU}@{playing.process}")
    first = control_id(MENU, "Label1(0)")
    captions = {int(row[2]): row[4] for row in rows}
    assert [captions[first + index] for index in range(12)] == CAPTIONS
    playing.pointer.key("Escape")
    playing.wait(MENU, "gone")


def menu_lefts(player: Player) -> list[int]:
    """Of every menu in sight: between the old place and the new one there may be none, or two."""
    rows = player.ctl.ask("list")
    return [int(row[5]) for row in rows if row[1:3] == [str(player.process), MENU] and row[4] == "1"]


def test_right_click_elsewhere_moves_the_menu(playing: Player, pointer: Pointer) -> None:
    playing.open_menu(playing.client().point(0.6, 0.3))
    x, y = playing.client().point(0.1, 0.2)
    pointer.click((x, y), RIGHT)
    until(lambda: any(abs(left - x) <= 1 for left in menu_lefts(playing)), 5, "it is there")
    pointer.key("Escape")
    playing.wait(MENU, "gone")


def test_click_outside_closes_the_menu(playing: Player, pointer: Pointer) -> None:
    playing.open_menu(playing.client().point(0.5, 0.5))
    pointer.click(playing.client().point(0.1, 0.1), LEFT)
    playing.wait(MENU, "gone")
    assert playing.playback().state == PLAYING


def test_menu_stays_on_the_screen(player: Player) -> None:
    player.folder.set_options({1: "1", 23: "13500", 24: "11250", 25: "5160", 26: "3855"})
    player.open()
    player.show_picture()
    player.open_menu(player.client().point(0.9, 0.9))
    menu = player.rect(MENU)
    assert menu.right <= SCREEN_SIZE[0] and menu.bottom <= SCREEN_SIZE[1]
    player.pointer.key("Escape")
    player.wait(MENU, "gone")


def test_pause_and_play_by_mouse(playing: Player) -> None:
    playing.choose("Pause")
    playing.wait_for(state=PAUSED)
    playing.choose("Play")
    playing.wait_for(state=PLAYING, visible=1)


def test_pause_and_play_by_keyboard(playing: Player, pointer: Pointer) -> None:
    playing.open_menu(playing.client().point(0.02, 0.02))
    pointer.key("Down", "Down", "Return")
    playing.wait(MENU, "gone")
    playing.wait_for(state=PAUSED)
    playing.open_menu(playing.client().point(0.02, 0.02))
    pointer.key("Home", "Return")
    playing.wait(MENU, "gone")
    playing.wait_for(state=PLAYING)


def test_show_control_brings_the_remote(playing: Player) -> None:
    playing.ctl.ask("hide", f"{REMOTE}@{playing.process}")
    playing.wait(REMOTE, "hidden")
    playing.choose("Show control")
    playing.wait(REMOTE, "visible")
    playing.show_picture()


def test_mute_is_silence_and_back(playing: Player) -> None:
    playing.media(SET_VOLUME, -1234)
    playing.choose("Mute")
    playing.wait_for(volume=SILENT)
    playing.seek(3.0)
    playing.pause()
    playing.play()
    playing.choose("Mute")
    playing.wait_for(volume=-1234)


def test_statistics_opens_and_closes(playing: Player) -> None:
    playing.choose("Statistics")
    playing.wait(STATISTICS, "visible")
    assert playing.playback().visible == 1
    playing.ctl.ask("close", f"{STATISTICS}@{playing.process}")
    playing.wait(STATISTICS, "gone")
    assert playing.playback().state == PLAYING


def open_play_rate(player: Player) -> None:
    player.choose("Playrate")
    player.wait(PLAY_RATE, "visible")
    until(lambda: player.pointer.focused_title() == "Playrate", 5, "keys go to the dialog")


def close_play_rate(player: Player) -> None:
    player.ctl.ask("close", f"{PLAY_RATE}@{player.process}")
    player.wait(PLAY_RATE, "gone")


def test_play_rate_dialog_is_centred_and_topmost(playing: Player) -> None:
    open_play_rate(playing)
    x, y = playing.rect(PLAY_RATE).centre
    assert abs(x - SCREEN_SIZE[0] // 2) <= 2 and abs(y - SCREEN_SIZE[1] // 2) <= 2
    assert playing.is_topmost(PLAY_RATE)
    assert playing.text(PLAY_RATE, "Text1") == "1.00"
    close_play_rate(playing)


def test_rate_is_typed_and_set_back_by_the_button(playing: Player, pointer: Pointer) -> None:
    open_play_rate(playing)
    field = playing.rect(PLAY_RATE, control_id(PLAY_RATE, "Text1"))
    pointer.click(field.centre)
    pointer.key("ctrl+a")
    pointer.type("2.5")
    pointer.key("Return")
    playing.wait_for(rate=2500)
    assert playing.text(PLAY_RATE, "Text1") == "2.50"
    normal = playing.rect(PLAY_RATE, control_id(PLAY_RATE, "Command1"))
    pointer.click(normal.centre)
    playing.wait_for(rate=1000)
    until(lambda: playing.text(PLAY_RATE, "Text1") == "1.00", 5, "the field shows the rate")
    close_play_rate(playing)


def test_rate_is_set_by_the_slider_from_the_keyboard(playing: Player, pointer: Pointer) -> None:
    open_play_rate(playing)
    pointer.key("End")
    playing.wait_for(rate=4000)
    pointer.key("Home")
    playing.wait_for(rate=250)
    pointer.key("Escape")
    playing.wait(PLAY_RATE, "gone")
    playing.wait_for(rate=250)


def test_play_rate_shows_the_rate_in_force(playing: Player) -> None:
    playing.media(SET_RATE, 500)
    open_play_rate(playing)
    assert playing.text(PLAY_RATE, "Text1") == "0.50"
    close_play_rate(playing)


def test_open_plays_the_file_that_is_chosen(player: Player) -> None:
    chosen = player.folder.path.parent / "другой 剪辑.part2.avi"
    shutil.copyfile(clips.path("mpeg4-mp3.avi"), chosen)
    open_in_sight(player)
    player.choose("Open ...")
    player.wait(FILE_DIALOG, "visible")
    player.wait_for(visible=0)
    player.answer_open_dialog(chosen)
    player.wait_for(state=PLAYING, visible=1)
    assert player.text(REMOTE, "Label1") == "другой 剪辑"


def test_cancelling_open_leaves_the_clip_and_hides_it(player: Player) -> None:
    open_in_sight(player)
    player.choose("Open ...")
    player.wait(FILE_DIALOG, "visible")
    player.answer_open_dialog(None)
    assert player.playback().visible == 0
    assert player.playback().duration > 0


def test_menu_in_full_screen_gives_escape_back(player: Player, pointer: Pointer) -> None:
    open_in_sight(player)
    player.choose("Fullscreen")
    player.wait_for(display=FULL_SCREEN)
    pointer.click((900, 700), RIGHT)
    player.wait(MENU, "visible")
    menu = player.rect(MENU)
    assert abs(menu.left - 900) <= 1 and abs(menu.top - 700) <= 1
    pointer.key("Down", "Down", "Return")
    player.wait(MENU, "gone")
    player.wait_for(state=PAUSED, display=FULL_SCREEN)
    pointer.key("Escape")
    player.wait_for(display=IN_WINDOW, visible=1)


def test_keys_of_the_video_window(player: Player, pointer: Pointer) -> None:
    open_in_sight(player)
    pointer.key("space")
    player.wait_for(state=PAUSED)
    pointer.key("space")
    player.wait_for(state=PLAYING)
    pointer.key("F11")
    player.wait_for(display=FULL_SCREEN)
    pointer.key("space")
    player.wait_for(state=PAUSED)
    pointer.key("Escape")
    player.wait_for(display=IN_WINDOW)
    pointer.key("shift+F10")
    player.wait(MENU, "visible")
    pointer.key("Escape")
    player.wait(MENU, "gone")


def test_exit_ends_the_program(player: Player) -> None:
    player.open()
    player.show_picture()
    player.open_menu()
    exit_label = player.rect(MENU, control_id(MENU, "Label1(11)"))
    player.pointer.click(exit_label.centre)
    assert player.ended() == 0
