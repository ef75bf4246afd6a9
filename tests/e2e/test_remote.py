"""The buttons, the read-out and the keys of the remote control."""

from __future__ import annotations

import pathlib
import shutil

import clips
import numpy as np
import pytest
from conftest import Desk
from options import OptionsDialog
from player import FILE_DIALOG, PAUSED, PLAYING, REMOTE, VIDEO, Player
from pointer import Pointer
from remote import (
    CLOCK,
    EXIT_BUTTON,
    HELP_BUTTON,
    HIDE_ALL_BUTTON,
    HIDE_BUTTON,
    HIGHLIGHTED,
    OPEN_BUTTON,
    PAUSE_BUTTON,
    PLAY_BUTTON,
    POSITION_KNOB,
    STOP_BUTTON,
    TITLE,
    TRACK_LEFT,
    Remote,
    start_in_sight,
)
from screen import Rect, Screen, is_near
from waiting import equals, until

# Of the letters of the title and of the dots behind it, at least and at most, pixels.
LETTER_HEIGHT, DOT_HEIGHT = 8, 3


@pytest.fixture
def remote(desk: Desk) -> Remote:
    """The remote of a player whose clip plays from its beginning in sight; the pointer is on
    none of its buttons."""
    shared = Remote(desk.shared("remote", start_in_sight))
    shared.play()
    shared.leave_buttons()
    shared.player.seek(0)
    return shared


def shows_second(player: Player, screen: Screen, second: int) -> bool:
    seen = clips.background(screen.pixels(), player.client())
    return is_near(seen, clips.SECOND_COLOURS[second])


# ---- buttons ----


def test_play_starts_a_waiting_clip(player: Player, screen: Screen) -> None:
    player.folder.set_options({4: "0"})
    player.open_any(clips.path())
    assert player.playback().state != PLAYING
    assert player.playback().visible == 0
    player.seek(3.1)
    Remote(player).click(PLAY_BUTTON)
    player.wait_for(state=PLAYING, visible=1)
    until(lambda: shows_second(player, screen, 3), 5, "the picture is seen")


def test_pause_and_pause_again(remote: Remote, screen: Screen) -> None:
    player = remote.player
    player.seek(2.2)
    remote.click(PAUSE_BUTTON)
    player.wait_for(state=PAUSED, visible=1)
    position = player.playback().position
    until(lambda: shows_second(player, screen, position // 1000), 5, "the picture stays")
    assert player.playback().position == position
    remote.click(PAUSE_BUTTON)
    player.wait_for(state=PLAYING, visible=1)
    until(lambda: player.playback().position > position, 5, "it goes on")


def test_stop_rewinds_and_hides_the_picture(remote: Remote, screen: Screen) -> None:
    player = remote.player
    player.seek(5.0)
    left_end = player.rect(REMOTE).left + TRACK_LEFT
    until(lambda: remote.rect(POSITION_KNOB).left > left_end + 100, 5, "the knob is on its way")
    remote.click(STOP_BUTTON)
    player.wait_for(state=PAUSED, position=0, visible=0)
    equals(lambda: remote.rect(POSITION_KNOB).left, left_end, 5, "the left end of the knob")
    centre = player.client().centre

    def is_black() -> bool:
        return is_near(tuple(screen.pixels()[centre[1], centre[0]]), (0, 0, 0))

    until(is_black, 5, "no picture is seen")
    remote.click(PLAY_BUTTON)
    player.wait_for(state=PLAYING, visible=1)
    assert player.playback().position < 3000


def test_stop_does_nothing_while_paused(remote: Remote) -> None:
    player = remote.player
    player.seek(3.0)
    remote.click(PAUSE_BUTTON)
    player.wait_for(state=PAUSED)
    position = player.playback().position
    remote.click(STOP_BUTTON)
    remote.settle()
    after = player.playback()
    assert (after.state, after.position, after.visible) == (PAUSED, position, 1)


def test_pause_does_nothing_after_stop(remote: Remote) -> None:
    player = remote.player
    remote.click(STOP_BUTTON)
    player.wait_for(state=PAUSED, position=0, visible=0)
    remote.click(PAUSE_BUTTON)
    remote.settle()
    after = player.playback()
    assert (after.state, after.position, after.visible) == (PAUSED, 0, 0)


def test_options_pauses_and_reads_the_settings_again(player: Player) -> None:
    start_in_sight(player)
    assert not player.is_topmost(VIDEO)
    dialog = OptionsDialog(player)
    player.wait_for(state=PAUSED, visible=1)
    player.folder.set_options({2: "1"})
    dialog.cancel()
    for window in (VIDEO, REMOTE):
        until(lambda: player.is_topmost(window), 5, f"{window} is on top")
    dialog = OptionsDialog(player)
    player.folder.set_options({})
    dialog.cancel()
    for window in (VIDEO, REMOTE):
        until(lambda: not player.is_topmost(window), 5, f"{window} is no longer on top")
    assert player.playback().state == PAUSED


def test_help_without_a_help_file_does_no_harm(remote: Remote) -> None:
    player = remote.player
    remote.click(HELP_BUTTON)
    remote.settle()
    shown = {row[2] for row in player.ctl.ask("list") if row[4] == "1"}
    assert shown == {VIDEO, REMOTE}
    assert player.playback().state == PLAYING
    assert not player.crash_lines()


def test_hide_leaves_the_video(player: Player) -> None:
    start_in_sight(player)
    Remote(player).click(HIDE_BUTTON)
    player.wait(REMOTE, "hidden")
    assert player.is_in(VIDEO, "visible")
    assert player.playback().visible == 1
    player.choose("Show control")
    player.wait(REMOTE, "visible")


def test_hide_all_hides_both_windows(player: Player) -> None:
    start_in_sight(player)
    Remote(player).click(HIDE_ALL_BUTTON)
    player.wait(REMOTE, "hidden")
    player.wait(VIDEO, "hidden")
    position = player.playback().position
    until(lambda: player.playback().position > position, 5, "it plays on unseen")


def test_exit_ends_the_program(player: Player) -> None:
    start_in_sight(player)
    Remote(player).click(EXIT_BUTTON)
    assert player.ended() == 0


# ---- the open button ----


def test_open_plays_the_file_that_is_chosen(player: Player) -> None:
    chosen = player.folder.path.parent / "второй фильм.part2.avi"
    shutil.copyfile(clips.path("mpeg4-mp3.avi"), chosen)
    start_in_sight(player)
    remote = Remote(player)
    remote.click(OPEN_BUTTON)
    player.wait(FILE_DIALOG, "visible")
    player.wait_for(visible=0)
    player.answer_open_dialog(chosen)
    player.wait_for(state=PLAYING, visible=1)
    assert remote.text(TITLE) == "второй фильм"
    assert 0 < player.playback().duration < 5000


def test_cancelling_open_leaves_the_clip_and_hides_it(player: Player) -> None:
    start_in_sight(player)
    remote = Remote(player)
    remote.click(OPEN_BUTTON)
    player.wait(FILE_DIALOG, "visible")
    player.answer_open_dialog(None)
    remote.settle()
    assert player.playback().visible == 0
    assert player.playback().duration == pytest.approx(clips.SECONDS * 1000, abs=50)
    assert remote.text(TITLE) == "timecode"
    remote.play()


# ---- the highlighted pictures ----


@pytest.mark.parametrize("button", HIGHLIGHTED)
def test_pointer_highlights_a_button(remote: Remote, screen: Screen, button: str) -> None:
    pointer = remote.pointer
    place = remote.rect(button)
    other = next(name for name in HIGHLIGHTED if name != button)

    def pixels() -> np.ndarray:
        return screen.pixels()[place.top : place.bottom, place.left : place.right]

    def becomes(wanted: np.ndarray, what: str) -> None:
        until(lambda: bool((pixels() == wanted).all()), 5, what)

    plain = pixels()
    remote.point_at(button)
    until(lambda: bool((pixels() != plain).any()), 5, "it looks another way")
    remote.leave_buttons()
    becomes(plain, "it looks as before, with the pointer beside it")

    remote.point_at(button)
    remote.point_at(other)
    until(lambda: remote.is_plain(button), 5, f"{button} is plain with the pointer on {other}")
    becomes(plain, "it looks as before, with the pointer on another button")

    remote.point_at(button)
    window = remote.player.rect(REMOTE)
    pointer.move((window.right + 200, window.bottom + 300))
    until(lambda: remote.is_plain(button), 5, f"{button} is plain with the pointer elsewhere")
    becomes(plain, "it looks as before, with the pointer out of the window")


# ---- the read-out ----


def readings_until(remote: Remote, last: str) -> list[str]:
    """The texts of the read-out, each once as it comes; asked far more often than it changes."""
    seen: list[str] = []

    def is_last() -> bool:
        text = remote.text(CLOCK)
        if not seen or seen[-1] != text:
            seen.append(text)
        return text == last

    until(is_last, 10, f"the read-out shows {last}")
    return seen


def test_read_out_while_it_starts_and_runs(remote: Remote) -> None:
    readings_until(remote, "00:00:01")
    remote.click(STOP_BUTTON)
    remote.player.wait_for(state=PAUSED, position=0)
    equals(lambda: remote.text(CLOCK), "00:00:00", 5, "the read-out")
    remote.click(PLAY_BUTTON)
    seen = readings_until(remote, "00:00:02")
    assert seen[-3:] == ["Loading...", "00:00:01", "00:00:02"]
    assert seen[:-3] in ([], ["00:00:00"]), "until the first tick of the timer"


def test_read_out_after_open(player: Player) -> None:
    start_in_sight(player)
    remote = Remote(player)
    remote.click(OPEN_BUTTON)
    player.wait(FILE_DIALOG, "visible")
    player.answer_open_dialog(clips.path("timecode.mp4"))
    seen = readings_until(remote, "00:00:01")
    assert seen[-2:] == ["Loading...", "00:00:01"]
    assert readings_until(remote, "00:00:02") == ["00:00:01", "00:00:02"]


def test_click_on_the_read_out_shows_the_whole_time(remote: Remote) -> None:
    player = remote.player
    remote.click(PAUSE_BUTTON)
    player.wait_for(state=PAUSED)
    player.seek(4.2)
    equals(lambda: remote.text(CLOCK), "00:00:04", 5, "the time that is over")
    remote.click(CLOCK)
    equals(lambda: remote.text(CLOCK), "00:00:10", 5, "the time of the whole clip")
    remote.click(CLOCK)
    equals(lambda: remote.text(CLOCK), "00:00:04", 5, "the time that is over")


def ink(screen: Screen, place: Rect) -> np.ndarray:
    """Where something is drawn: the pixels that differ from the one in the corner."""
    part = screen.pixels()[place.top : place.bottom, place.left : place.right].astype(int)
    return np.abs(part - part[0, 0]).max(axis=2) > 60


def ends_with_three_dots(drawn: np.ndarray) -> bool:
    """Whether right of the last letter stand three things that are no higher than dots."""
    rows = np.flatnonzero(drawn.any(axis=1))
    if len(rows) < LETTER_HEIGHT:
        return False
    letters = drawn[: rows[-1] + 1 - DOT_HEIGHT]
    last_letter = int(np.flatnonzero(letters.any(axis=0))[-1])
    right_of_it = drawn[:, last_letter + 1 :].any(axis=0).astype(int)
    return np.count_nonzero(np.diff(right_of_it) == 1) == 3


def test_long_title_is_cut_on_the_screen_only(
    player: Player, screen: Screen, tmp_path: pathlib.Path
) -> None:
    name = "H" * 80
    clip = tmp_path / f"{name}.avi"
    shutil.copyfile(clips.path("mpeg4-mp3.avi"), clip)
    player.open_any(clip)
    remote = Remote(player)
    assert remote.text(TITLE) == name
    place = remote.rect(TITLE)
    until(lambda: ends_with_three_dots(ink(screen, place)), 5, "the title ends with dots")
    assert ink(screen, place)[:, : place.width // 2].any(axis=0).sum() > place.width // 4


# ---- keys ----


@pytest.mark.parametrize("keys", ["Escape", "alt+F4"])
def test_keys_that_end_the_program(player: Player, pointer: Pointer, keys: str) -> None:
    player.start_and_show()
    Remote(player).take_keys()
    pointer.key(keys)
    assert player.ended() == 0


def test_other_shift_keys_do_not_end_the_program(remote: Remote) -> None:
    remote.take_keys()
    remote.pointer.key("shift+alt+F4", "ctrl+alt+F4")
    remote.settle()
    for window in (REMOTE, VIDEO):
        assert remote.player.is_in(window, "visible")
    assert remote.player.playback().state == PLAYING


def test_tab_and_space_press_the_buttons_in_order(player: Player, screen: Screen) -> None:
    player.folder.set_options({4: "0"})
    player.open_any(clips.path())
    remote, pointer = Remote(player), player.pointer
    remote.take_keys()
    places = [remote.rect(button) for button in (PLAY_BUTTON, PAUSE_BUTTON)]

    def looks() -> list[bytes]:
        pixels = screen.pixels()
        return [pixels[box.top : box.bottom, box.left : box.right].tobytes() for box in places]

    def ring_is_on(number: int) -> bool:
        return [now != before for now, before in zip(looks(), plain)] == [
            number == other for other in range(len(places))
        ]

    plain = looks()
    pointer.key("Tab")
    until(lambda: ring_is_on(0), 5, "a ring is seen around play")
    pointer.key("space")
    player.wait_for(state=PLAYING, visible=1)
    pointer.key("Tab")
    until(lambda: ring_is_on(1), 5, "the ring has moved to pause")
    pointer.key("space")
    player.wait_for(state=PAUSED)
    pointer.key("shift+Tab", "Return")
    player.wait_for(state=PLAYING)


# ---- the notification area's numbers ----

# The icon reports these in the place of the pointer's horizontal position.
ICON_LEFT_UP, ICON_RIGHT_UP = 514, 517


@pytest.mark.parametrize("column", [ICON_LEFT_UP, ICON_RIGHT_UP])
def test_pointer_on_the_surface_is_not_taken_for_the_icon(remote: Remote, column: int) -> None:
    """A restore from the icon would hide the picture, and its menu would stand on the screen."""
    player = remote.player
    window = player.rect(REMOTE)
    remote.pointer.move((window.left + column, window.top + 3))
    remote.settle()
    assert player.playback().visible == 1
    listed = [row for row in player.ctl.ask("list") if "#32768" in row]
    assert not listed, listed
