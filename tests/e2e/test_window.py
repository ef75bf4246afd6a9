"""The borderless video window under a real mouse."""

from __future__ import annotations

import dataclasses

import clips
import pytest
from conftest import Desk
from player import FULL_SCREEN, IN_WINDOW, SET_DISPLAY, VIDEO, Player
from pointer import Point, Pointer
from screen import EMPTY_SCREEN, Rect, Screen, is_near
from waiting import until

TWIPS_PER_PIXEL = 15
FIRST_RECT = Rect(3090 // 15, 1005 // 15, 5160 // 15, 3855 // 15)
SMALLEST = 400 / TWIPS_PER_PIXEL
MOVE = (70, 50)


def start_bare(player: Player) -> None:
    """Nothing is loaded, so the bare window takes the mouse."""
    player.start_and_show()


def start_with_picture(player: Player) -> None:
    player.open()
    player.show_picture()
    player.pause_at(2.5)


@pytest.fixture
def bare(desk: Desk) -> Player:
    return desk.shared("bare", start_bare)


@pytest.fixture
def with_picture(desk: Desk) -> Player:
    return desk.shared("with picture", start_with_picture)


@pytest.fixture(params=["bare", "with_picture"], scope="module")
def surface(request: pytest.FixtureRequest) -> str:
    return str(request.param)


@pytest.fixture
def either(request: pytest.FixtureRequest, surface: str) -> Player:
    found: Player = request.getfixturevalue(surface)
    return found


def zone_point(rect: Rect, zone: str) -> Point:
    """Inside a zone by a margin that a hand would keep: 3 pixels from the edge."""
    return {
        "body": rect.point(0.3, 0.4),
        "right": (rect.right - 3, rect.top + rect.height // 3),
        "bottom": (rect.left + rect.width // 3, rect.bottom - 3),
        "corner": (rect.right - 3, rect.bottom - 3),
    }[zone]


def after_drag(rect: Rect, zone: str, dx: int, dy: int) -> Rect:
    return {
        "body": dataclasses.replace(rect, left=rect.left + dx, top=rect.top + dy),
        "right": dataclasses.replace(rect, width=rect.width + dx),
        "bottom": dataclasses.replace(rect, height=rect.height + dy),
        "corner": dataclasses.replace(rect, width=rect.width + dx, height=rect.height + dy),
    }[zone]


def test_first_run_places_the_window(bare: Player) -> None:
    bare.wait_for_rect(FIRST_RECT, tolerance=0)


@pytest.mark.parametrize("zone", ["body", "right", "bottom", "corner"])
def test_drag_in_each_zone(either: Player, pointer: Pointer, zone: str) -> None:
    before = either.rect(VIDEO)
    start = zone_point(before, zone)
    pointer.drag(start, (start[0] + MOVE[0], start[1] + MOVE[1]))
    either.wait_for_rect(after_drag(before, zone, *MOVE))
    changed = either.rect(VIDEO)
    start = zone_point(changed, zone)
    pointer.drag(start, (start[0] - MOVE[0], start[1] - MOVE[1]))
    either.wait_for_rect(before, tolerance=2)


@pytest.mark.parametrize(("from_edge", "sizes"), [(9, True), (12, False)])
def test_right_edge_zone_is_ten_pixels_wide(
    either: Player, pointer: Pointer, from_edge: int, sizes: bool
) -> None:
    before = either.rect(VIDEO)
    start = (before.right - from_edge, before.centre[1])
    pointer.drag(start, (start[0] + MOVE[0], start[1]))
    either.wait_for_rect(after_drag(before, "right" if sizes else "body", MOVE[0], 0))
    changed = either.rect(VIDEO)
    start = (changed.right - from_edge, changed.centre[1])
    pointer.drag(start, (start[0] - MOVE[0], start[1]))
    either.wait_for_rect(before, tolerance=2)


def test_window_cannot_be_made_smaller_than_400_twips(either: Player, pointer: Pointer) -> None:
    before = either.rect(VIDEO)
    start = zone_point(before, "corner")
    pointer.drag(start, (before.left + 5, before.top + 5), steps=16)
    small = dataclasses.replace(before, width=round(SMALLEST), height=round(SMALLEST))
    either.wait_for_rect(small)
    start = (small.right - 3, small.bottom - 3)
    pointer.drag(start, (before.right - 3, before.bottom - 3), steps=16)
    either.wait_for_rect(before, tolerance=3)


def test_picture_follows_the_size_of_the_window(
    with_picture: Player, pointer: Pointer, screen: Screen
) -> None:
    before = with_picture.rect(VIDEO)
    start = zone_point(before, "corner")
    pointer.drag(start, (start[0] + 120, start[1] + 60))
    with_picture.wait_for_rect(after_drag(before, "corner", 120, 60))

    def picture_fills_the_new_size() -> bool:
        client = with_picture.client()
        seen = clips.background(screen.pixels(), client)
        frame = clips.frame_number(screen.pixels(), client)
        return is_near(seen, clips.SECOND_COLOURS[2]) and abs(frame - 62) <= 1

    until(picture_fills_the_new_size, 5, "the picture has the new size")
    changed = with_picture.rect(VIDEO)
    start = zone_point(changed, "corner")
    pointer.drag(start, (start[0] - 120, start[1] - 60))
    with_picture.wait_for_rect(before, tolerance=2)


def covers_the_screen(screen: Screen) -> bool:
    pixels = screen.pixels()
    height, width, _ = pixels.shape
    corners = [(2, 2), (2, width - 3), (height - 3, 2), (height - 3, width - 3)]
    bars = all(is_near(tuple(pixels[corner]), (0, 0, 0)) for corner in corners)
    full = clips.background(pixels, Rect(0, 0, width, height))
    return bars and is_near(full, clips.SECOND_COLOURS[2])


def shows_the_empty_screen(screen: Screen) -> bool:
    pixels = screen.pixels()
    return is_near(tuple(pixels[-3, -3]), EMPTY_SCREEN)


@pytest.mark.parametrize("leave", ["escape", "double click"])
def test_full_screen_covers_the_screen_and_comes_back(
    with_picture: Player, pointer: Pointer, screen: Screen, leave: str
) -> None:
    before = with_picture.rect(VIDEO)
    assert shows_the_empty_screen(screen)
    with_picture.choose("Fullscreen")
    with_picture.wait_for(display=FULL_SCREEN)
    until(lambda: covers_the_screen(screen), 5, "the picture covers the screen")
    if leave == "escape":
        pointer.key("Escape")
    else:
        pointer.double_click((640, 512))
    with_picture.wait_for(display=IN_WINDOW)
    until(lambda: shows_the_empty_screen(screen), 5, "the rest of the screen is seen again")
    with_picture.wait_for_rect(before, tolerance=0)
    assert with_picture.playback().visible == 1


def test_full_screen_while_playing_goes_on(with_picture: Player, screen: Screen) -> None:
    with_picture.seek(1.0)
    with_picture.play()
    with_picture.media(SET_DISPLAY, FULL_SCREEN)
    until(lambda: with_picture.playback().position > 2500, 10, "it plays on")
    with_picture.media(SET_DISPLAY, IN_WINDOW)
    with_picture.pause_at(2.5)
    until(lambda: shows_the_empty_screen(screen), 5, "the rest of the screen is seen again")


def test_coming_from_the_remote_hides_the_picture(desk: Desk, player: Player) -> None:
    player.open()
    player.show_picture()
    desk.pointer.click(player.client("nqp.Form4").point(0.01, 0.1))
    until(lambda: player.foreground() == "nqp.Form4", 5, "the remote is in front")
    desk.pointer.click(player.client().point(0.3, 0.5))
    player.wait_for(visible=0)


def test_remote_follows_when_it_is_told_to(player: Player, pointer: Pointer) -> None:
    player.folder.set_options({6: "1"})
    player.open()
    player.show_picture()
    video, remote = player.rect(VIDEO), player.rect("nqp.Form4")
    start = zone_point(video, "body")
    pointer.drag(start, (start[0] + MOVE[0], start[1] + MOVE[1]))
    player.wait_for_rect(after_drag(video, "body", *MOVE))
    player.wait_for_rect(after_drag(remote, "body", *MOVE), window="nqp.Form4", tolerance=2)
