"""The list area, the grips and the bare surface of the remote control."""

from __future__ import annotations

import dataclasses

import clips
import pytest
from conftest import Desk
from player import PAUSED, PLAYING, REMOTE, VIDEO, Player
from remote import (
    CLOCK,
    EXIT_BUTTON,
    HELP_BUTTON,
    HIDE_ALL_BUTTON,
    HIDE_BUTTON,
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
    TRACK_RIGHT,
    VOLUME_KNOB,
    WIDTH_GRIP,
    Remote,
    start_in_sight,
)
from screen import EMPTY_SCREEN, Rect, Screen, is_near
from waiting import equals, until

TWIPS_PER_PIXEL = 15
BAR_HEIGHT, FIRST_HEIGHT = 59, 320
SMALLEST_WIDTH, SMALLEST_HEIGHT = 560, 160
RIGHT_HAND = [
    *(OPTIONS_BUTTON, HELP_BUTTON, LIST_BUTTON, HIDE_BUTTON, HIDE_ALL_BUTTON, EXIT_BUTTON),
    *(VOLUME_KNOB, WIDTH_GRIP, CLOCK, "Text5", "Text4", "Text6"),
]
LEFT_HAND = [
    *(PLAY_BUTTON, PAUSE_BUTTON, STOP_BUTTON, OPEN_BUTTON),
    *("Text1", "Text2", "Text3", "Command1", "Command2"),
]
MOVE = (90, 60)


@pytest.fixture
def remote(desk: Desk) -> Remote:
    """The remote of a player whose clip plays in sight."""
    shared = Remote(desk.shared("remote", start_in_sight))
    shared.play()
    return shared


def moved(rect: Rect, dx: int, dy: int = 0) -> Rect:
    return dataclasses.replace(rect, left=rect.left + dx, top=rect.top + dy)


def grown(rect: Rect, dx: int, dy: int = 0) -> Rect:
    return dataclasses.replace(rect, width=rect.width + dx, height=rect.height + dy)


def resize_by(remote: Remote, grip: str, dx: int, dy: int, steps: int = 8) -> None:
    x, y = remote.rect(grip).centre
    remote.pointer.drag((x, y), (x + dx, y + dy), steps)


# ---- the list area ----


def open_list(remote: Remote) -> Rect:
    """The window's place with the list, which is laid out after the window has its size."""
    bar = remote.player.rect(REMOTE)
    remote.click(LIST_BUTTON)
    until(lambda: remote.shows(LIST) and remote.rect(LIST).height > 0, 5, "the list is seen")
    opened = remote.player.rect(REMOTE)
    assert opened == dataclasses.replace(bar, height=opened.height)
    return opened


def close_list(remote: Remote) -> None:
    remote.click(LIST_BUTTON)
    until(lambda: not (remote.shows(LIST) or remote.shows(SIZE_GRIP)), 5, "the list is gone")
    assert remote.player.rect(REMOTE).height == BAR_HEIGHT


def test_list_button_opens_and_closes_the_list(remote: Remote) -> None:
    window = remote.player.rect(REMOTE)
    assert window.height == BAR_HEIGHT
    assert not remote.shows(LIST) and not remote.shows(SIZE_GRIP)
    opened = open_list(remote)
    assert opened.height == FIRST_HEIGHT
    assert remote.shows(SIZE_GRIP)
    listed = remote.rect(LIST)
    assert opened.left < listed.left and listed.right < opened.right
    assert opened.top + BAR_HEIGHT - 2 <= listed.top and listed.bottom < opened.bottom
    assert listed.height > 200
    close_list(remote)
    assert remote.player.rect(REMOTE) == window


def test_height_with_the_list_is_remembered(remote: Remote) -> None:
    opened = open_list(remote)
    resize_by(remote, SIZE_GRIP, 0, 70)
    remote.player.wait_for_rect(grown(opened, 0, 70), REMOTE, tolerance=0)
    close_list(remote)
    assert open_list(remote) == grown(opened, 0, 70)
    resize_by(remote, SIZE_GRIP, 0, -70)
    remote.player.wait_for_rect(opened, REMOTE, tolerance=0)
    close_list(remote)


# ---- the grips ----


def test_width_grip_widens_the_bar(remote: Remote) -> None:
    window = remote.player.rect(REMOTE)
    right = {name: remote.rect(name) for name in RIGHT_HAND}
    left = {name: remote.rect(name) for name in LEFT_HAND}
    title = remote.rect(TITLE)
    resize_by(remote, WIDTH_GRIP, 130, 40)
    remote.player.wait_for_rect(grown(window, 130), REMOTE, tolerance=0)
    equals(lambda: remote.rect(TITLE), grown(title, 130), 5, "the wider title")
    assert {name: remote.rect(name) for name in RIGHT_HAND} == {
        name: moved(rect, 130) for name, rect in right.items()
    }
    assert {name: remote.rect(name) for name in LEFT_HAND} == left
    resize_by(remote, WIDTH_GRIP, -400, 0)
    remote.player.wait_for_rect(window, REMOTE, tolerance=0)
    assert window.width == SMALLEST_WIDTH
    equals(lambda: remote.rect(TITLE), title, 5, "the title of the first width")
    assert {name: remote.rect(name) for name in RIGHT_HAND} == right


def test_position_track_grows_with_the_width(remote: Remote) -> None:
    remote.player.pause_at(clips.SECONDS)
    end = remote.player.rect(REMOTE).left + TRACK_RIGHT - remote.rect(POSITION_KNOB).width
    equals(lambda: remote.rect(POSITION_KNOB).left, end, 5, "the knob at the right end")
    resize_by(remote, WIDTH_GRIP, 100, 0)
    equals(lambda: remote.rect(POSITION_KNOB).left, end + 100, 5, "the knob at the new end")
    resize_by(remote, WIDTH_GRIP, -100, 0)
    equals(lambda: remote.rect(POSITION_KNOB).left, end, 5, "the knob at the old end")


def test_size_grip_sizes_the_list(remote: Remote) -> None:
    player = remote.player
    opened = open_list(remote)
    listed, exit_button = remote.rect(LIST), remote.rect(EXIT_BUTTON)
    resize_by(remote, SIZE_GRIP, 120, 80)
    player.wait_for_rect(grown(opened, 120, 80), REMOTE, tolerance=0)
    equals(lambda: remote.rect(LIST), grown(listed, 120, 80), 5, "the larger list")
    assert remote.rect(EXIT_BUTTON) == moved(exit_button, 120)

    resize_by(remote, SIZE_GRIP, -500, -500, steps=16)
    smallest = dataclasses.replace(opened, width=SMALLEST_WIDTH, height=SMALLEST_HEIGHT)
    player.wait_for_rect(smallest, REMOTE, tolerance=0)
    resize_by(remote, SIZE_GRIP, 0, FIRST_HEIGHT - SMALLEST_HEIGHT)
    player.wait_for_rect(opened, REMOTE, tolerance=0)
    equals(lambda: remote.rect(LIST), listed, 5, "the list of the first size")
    close_list(remote)


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


def is_window_at(screen: Screen, place: Rect) -> bool:
    """Whether a window on the empty screen ends at each side of the place."""
    pixels = screen.pixels()
    x, y = place.centre
    inside = [(place.left, y), (place.right - 1, y), (x, place.top), (x, place.bottom - 1)]
    beside = [(place.left - 1, y), (place.right, y), (x, place.top - 1), (x, place.bottom)]
    seen_inside = [is_near(tuple(pixels[y, x]), EMPTY_SCREEN) for x, y in inside]
    seen_beside = [is_near(tuple(pixels[y, x]), EMPTY_SCREEN) for x, y in beside]
    return not any(seen_inside) and all(seen_beside)


@pytest.mark.parametrize("state", [PLAYING, PAUSED], ids=["playing", "paused"])
def test_video_follows_when_it_is_told_to(player: Player, screen: Screen, state: int) -> None:
    geometry = {1: "1", 23: "3000", 24: "300", 25: "5160", 26: "3855"}
    player.folder.set_options({**geometry, 6: "1"})
    player.open()
    remote, pointer = Remote(player), player.pointer
    remote.play()
    if state == PAUSED:
        player.pause_at(3.5)
    video, window = player.rect(VIDEO), player.rect(REMOTE)
    until(lambda: is_window_at(screen, video), 5, "the video window is seen")
    x, y = remote.bare_spot()
    with pointer.held((x, y)):
        player.wait(VIDEO, "hidden")
        pointer.glide((x, y), (x + MOVE[0], y + MOVE[1]))
        assert player.is_in(VIDEO, "hidden")
    player.wait_for_rect(moved(window, *MOVE), REMOTE, tolerance=0)
    player.wait(VIDEO, "visible")
    target = moved(video, *MOVE)
    until(lambda: is_window_at(screen, target), 5, "the video window is seen at its new place")

    def picture_is_seen() -> bool:
        second = player.playback().position // 1000
        return is_near(clips.background(screen.pixels(), target), clips.SECOND_COLOURS[second])

    until(picture_is_seen, 5, "the picture is seen in it")
    playback = player.playback()
    assert (playback.state, playback.visible) == (state, 1)
    player.close()
    saved = [player.folder.option(number) for number in (23, 24)]
    wanted = [3000 + MOVE[0] * TWIPS_PER_PIXEL, 300 + MOVE[1] * TWIPS_PER_PIXEL]
    assert saved == list(map(str, wanted))
