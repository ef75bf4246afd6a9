"""The buttons, the read-out, the keys and the frame of the remote control."""

from __future__ import annotations

import dataclasses
import pathlib
import re
import shutil

import clips
import numpy as np
import pytest
from conftest import Desk
from player import FILE_DIALOG, PAUSED, PLAYING, REMOTE, VIDEO, Player
from pointer import Pointer
from remote import (
    CLOCK,
    EXIT_BUTTON,
    HELP_BUTTON,
    HIDE_ALL_BUTTON,
    HIDE_BUTTON,
    HIGHLIGHTED,
    LIST,
    LIST_BUTTON,
    OPEN_BUTTON,
    OPTIONS_BUTTON,
    PAUSE_BUTTON,
    PLAY_BUTTON,
    POSITION_KNOB,
    SIZE_GRIP,
    STOP_BUTTON,
    TITLE,
    WIDTH_GRIP,
    Remote,
)
from screen import Rect, Screen, is_near
from waiting import equals, until

BAR_HEIGHT, FIRST_HEIGHT = 59, 320
SMALLEST_WIDTH, SMALLEST_HEIGHT = 560, 160
TRACK_LEFT = 166  # from the left edge of the remote
RIGHT_HAND = [OPTIONS_BUTTON, HELP_BUTTON, LIST_BUTTON, HIDE_BUTTON, HIDE_ALL_BUTTON, EXIT_BUTTON]
RIGHT_HAND += ["Picture13", WIDTH_GRIP, CLOCK, "Text5", "Text4", "Text6"]
LEFT_HAND = [PLAY_BUTTON, PAUSE_BUTTON, STOP_BUTTON, OPEN_BUTTON, "Text1", "Command1", "Command2"]
MOVE = (90, 60)
CLOCK_FORM = re.compile(r"\d\d:\d\d:\d\d")


def start_in_sight(player: Player) -> None:
    player.open()
    Remote(player).play()


@pytest.fixture
def remote(desk: Desk) -> Remote:
    """The remote of a player whose clip plays from its beginning in sight; the pointer is on
    none of its buttons."""
    shared = Remote(desk.shared("remote", start_in_sight))
    shared.leave_buttons()
    shared.play()
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
    Remote(player).click(PLAY_BUTTON)
    player.wait_for(state=PLAYING, visible=1)
    until(lambda: shows_second(player, screen, 1), 5, "the picture of the next second is seen")


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
    before = player.playback()
    remote.click(STOP_BUTTON)
    remote.settle()
    assert player.playback() == before
    assert before.visible == 1


def test_pause_does_nothing_after_stop(remote: Remote) -> None:
    player = remote.player
    remote.click(STOP_BUTTON)
    player.wait_for(state=PAUSED, position=0, visible=0)
    stopped = player.playback()
    remote.click(PAUSE_BUTTON)
    remote.settle()
    assert player.playback() == stopped


def test_options_pauses_and_reads_the_settings_again(player: Player) -> None:
    start_in_sight(player)
    remote = Remote(player)
    assert not player.is_topmost(VIDEO)
    player.folder.set_options({2: "1"})
    remote.click(OPTIONS_BUTTON)
    player.wait_for(state=PAUSED, visible=1)
    for window in (VIDEO, REMOTE):
        until(lambda: player.is_topmost(window), 5, f"{window} is on top")
    player.folder.set_options({})
    remote.click(OPTIONS_BUTTON)
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


# ---- the list area ----


def test_list_button_opens_and_closes_the_list(remote: Remote) -> None:
    window = remote.player.rect(REMOTE)
    assert window.height == BAR_HEIGHT
    assert not remote.shows(LIST) and not remote.shows(SIZE_GRIP)
    remote.click(LIST_BUTTON)
    opened = dataclasses.replace(window, height=FIRST_HEIGHT)
    remote.player.wait_for_rect(opened, REMOTE, tolerance=0)
    until(lambda: remote.shows(LIST) and remote.shows(SIZE_GRIP), 5, "the list is seen")
    listed = remote.rect(LIST)
    assert window.left < listed.left and listed.right < window.right
    assert opened.top + BAR_HEIGHT - 2 <= listed.top and listed.bottom <= opened.bottom
    assert listed.height > 200
    remote.click(LIST_BUTTON)
    remote.player.wait_for_rect(window, REMOTE, tolerance=0)
    until(lambda: not (remote.shows(LIST) or remote.shows(SIZE_GRIP)), 5, "the list is gone")


def resize_by(remote: Remote, grip: str, dx: int, dy: int, steps: int = 8) -> None:
    x, y = remote.rect(grip).centre
    remote.pointer.drag((x, y), (x + dx, y + dy), steps)


def test_height_with_the_list_is_remembered(remote: Remote) -> None:
    window = remote.player.rect(REMOTE)
    remote.click(LIST_BUTTON)
    opened = dataclasses.replace(window, height=FIRST_HEIGHT)
    remote.player.wait_for_rect(opened, REMOTE, tolerance=0)
    resize_by(remote, SIZE_GRIP, 0, 70)
    higher = dataclasses.replace(window, height=FIRST_HEIGHT + 70)
    remote.player.wait_for_rect(higher, REMOTE, tolerance=0)
    remote.click(LIST_BUTTON)
    remote.player.wait_for_rect(window, REMOTE, tolerance=0)
    remote.click(LIST_BUTTON)
    remote.player.wait_for_rect(higher, REMOTE, tolerance=0)
    resize_by(remote, SIZE_GRIP, 0, -70)
    remote.player.wait_for_rect(opened, REMOTE, tolerance=0)
    remote.click(LIST_BUTTON)
    remote.player.wait_for_rect(window, REMOTE, tolerance=0)


# ---- the grips ----


def moved(rect: Rect, dx: int, dy: int = 0) -> Rect:
    return dataclasses.replace(rect, left=rect.left + dx, top=rect.top + dy)


def grown(rect: Rect, dx: int, dy: int = 0) -> Rect:
    return dataclasses.replace(rect, width=rect.width + dx, height=rect.height + dy)


def test_width_grip_widens_the_bar(remote: Remote) -> None:
    window = remote.player.rect(REMOTE)
    right = {name: remote.rect(name) for name in RIGHT_HAND}
    left = {name: remote.rect(name) for name in LEFT_HAND}
    title = remote.rect(TITLE)
    resize_by(remote, WIDTH_GRIP, 130, 40)
    remote.player.wait_for_rect(grown(window, 130), REMOTE, tolerance=0)
    assert {name: remote.rect(name) for name in RIGHT_HAND} == {
        name: moved(rect, 130) for name, rect in right.items()
    }
    assert {name: remote.rect(name) for name in LEFT_HAND} == left
    assert remote.rect(TITLE) == grown(title, 130)
    resize_by(remote, WIDTH_GRIP, -400, 0)
    remote.player.wait_for_rect(window, REMOTE, tolerance=0)
    assert window.width == SMALLEST_WIDTH
    assert {name: remote.rect(name) for name in RIGHT_HAND} == right
    assert remote.rect(TITLE) == title


def test_position_track_grows_with_the_width(remote: Remote) -> None:
    player = remote.player
    remote.click(PAUSE_BUTTON)
    player.wait_for(state=PAUSED)
    player.seek(10.0)
    window, knob = player.rect(REMOTE), remote.rect(POSITION_KNOB)
    end = knob_end(window, knob.width)
    equals(lambda: remote.rect(POSITION_KNOB).left, end, 5, "the knob at the right end")
    resize_by(remote, WIDTH_GRIP, 100, 0)
    equals(lambda: remote.rect(POSITION_KNOB).left, end + 100, 5, "the knob at the new end")
    resize_by(remote, WIDTH_GRIP, -100, 0)
    equals(lambda: remote.rect(POSITION_KNOB).left, end, 5, "the knob at the old end")


def knob_end(window: Rect, knob_width: int) -> int:
    return window.left + 428 - knob_width


def test_size_grip_sizes_the_list(remote: Remote) -> None:
    player = remote.player
    bar = player.rect(REMOTE)
    remote.click(LIST_BUTTON)
    opened = dataclasses.replace(bar, height=FIRST_HEIGHT)
    player.wait_for_rect(opened, REMOTE, tolerance=0)
    listed, exit_button = remote.rect(LIST), remote.rect(EXIT_BUTTON)
    resize_by(remote, SIZE_GRIP, 120, 80)
    player.wait_for_rect(grown(opened, 120, 80), REMOTE, tolerance=0)
    assert remote.rect(LIST) == grown(listed, 120, 80)
    assert remote.rect(EXIT_BUTTON) == moved(exit_button, 120)

    resize_by(remote, SIZE_GRIP, -500, -500, steps=16)
    smallest = dataclasses.replace(bar, width=SMALLEST_WIDTH, height=SMALLEST_HEIGHT)
    player.wait_for_rect(smallest, REMOTE, tolerance=0)
    remote.pointer.drag(
        remote.rect(SIZE_GRIP).centre, moved_point(remote, 0, FIRST_HEIGHT - SMALLEST_HEIGHT)
    )
    player.wait_for_rect(opened, REMOTE, tolerance=0)
    assert remote.rect(LIST) == listed
    remote.click(LIST_BUTTON)
    player.wait_for_rect(bar, REMOTE, tolerance=0)


def moved_point(remote: Remote, dx: int, dy: int) -> tuple[int, int]:
    x, y = remote.rect(SIZE_GRIP).centre
    return x + dx, y + dy


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
    remote.click(STOP_BUTTON)
    remote.player.wait_for(state=PAUSED, position=0)
    equals(lambda: remote.text(CLOCK), "00:00:00", 5, "the read-out")
    remote.click(PLAY_BUTTON)
    assert readings_until(remote, "00:00:02") == [
        "00:00:00",
        "Loading...",
        "00:00:01",
        "00:00:02",
    ]


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
    """Where something is drawn: rows and columns of pixels that differ from the corner's."""
    part = screen.pixels()[place.top : place.bottom, place.left : place.right].astype(int)
    return np.abs(part - part[0, 0]).max(axis=2) > 60


def test_long_title_is_cut_on_the_screen_only(
    player: Player, screen: Screen, tmp_path: pathlib.Path
) -> None:
    name = "H" * 80
    clip = tmp_path / f"{name}.avi"
    shutil.copyfile(clips.path("mpeg4-mp3.avi"), clip)
    player.open_any(clip)
    remote = Remote(player)
    assert remote.text(TITLE) == name
    drawn = ink(screen, remote.rect(TITLE))
    rows = np.flatnonzero(drawn.any(axis=1))
    columns = np.flatnonzero(drawn.any(axis=0))
    letters = drawn[: rows[-1] - 2]  # a dot stands on the line and is no higher than this
    last_letter = int(np.flatnonzero(letters.any(axis=0))[-1])
    dots = drawn[:, last_letter + 1 :].any(axis=0).astype(int)
    assert len(rows) >= 8
    assert columns[-1] > remote.rect(TITLE).width * 0.85
    assert np.count_nonzero(np.diff(np.append(dots, 0)) == -1) == 3


# ---- keys ----


@pytest.mark.parametrize("keys", ["Escape", "alt+F4"])
def test_keys_that_end_the_program(player: Player, pointer: Pointer, keys: str) -> None:
    player.start_and_show()
    Remote(player).take_keys()
    pointer.key(keys)
    assert player.ended() == 0


def test_other_shift_keys_do_not_end_the_program(remote: Remote) -> None:
    player = remote.player
    remote.click(PAUSE_BUTTON)
    player.wait_for(state=PAUSED)
    remote.take_keys()
    remote.pointer.key("shift+alt+F4", "ctrl+alt+F4", "Tab", "space")
    player.wait_for(state=PLAYING)
    assert player.is_in(REMOTE, "visible") and player.is_in(VIDEO, "visible")


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


# ---- moving the remote ----


def test_remote_is_dragged_by_its_bare_surface(remote: Remote) -> None:
    player = remote.player
    video, window = player.rect(VIDEO), player.rect(REMOTE)
    x, y = remote.bare_spot()
    remote.pointer.drag((x, y), (x + MOVE[0], y + MOVE[1]))
    player.wait_for_rect(moved(window, *MOVE), REMOTE, tolerance=0)
    assert player.rect(VIDEO) == video
    assert player.is_in(VIDEO, "visible")
    x, y = remote.bare_spot()
    remote.pointer.drag((x, y), (x - MOVE[0], y - MOVE[1]))
    player.wait_for_rect(window, REMOTE, tolerance=0)
    assert player.playback().visible == 1


def test_video_follows_when_it_is_told_to(player: Player, screen: Screen) -> None:
    player.folder.set_options({1: "1", 6: "1", 23: "3000", 24: "1500", 25: "5160", 26: "3855"})
    player.open()
    remote, pointer = Remote(player), player.pointer
    remote.play()
    player.pause_at(3.5)
    video, window = player.rect(VIDEO), player.rect(REMOTE)
    x, y = remote.bare_spot()
    with pointer.held((x, y)):
        player.wait(VIDEO, "hidden")
        pointer.glide((x, y), (x + MOVE[0], y + MOVE[1]))
        player.wait_for_rect(moved(window, *MOVE), REMOTE, tolerance=0)
        assert player.is_in(VIDEO, "hidden")
    player.wait(VIDEO, "visible")
    player.wait_for_rect(moved(video, *MOVE), tolerance=0)
    assert player.playback().visible == 1
    until(lambda: shows_second(player, screen, 3), 5, "the picture is seen at the new place")
    player.close()
    saved = [int(player.folder.option(number)) for number in (23, 24)]
    assert saved == [3000 + MOVE[0] * 15, 1500 + MOVE[1] * 15]
