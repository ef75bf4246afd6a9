"""The position knob and the volume knob of the remote control."""

from __future__ import annotations

import clips
import pytest
from conftest import Desk
from player import LOUDEST, PAUSED, PLAYING, REMOTE, SILENT, Player
from remote import (
    CLOCK,
    PAUSE_BUTTON,
    POSITION_KNOB,
    TRACK_BOTTOM,
    TRACK_LEFT,
    TRACK_RIGHT,
    TRACK_TOP,
    VOLUME_KNOB,
    Remote,
    start_in_sight,
)
from screen import Rect, Screen
from sound import SILENCE_DB, Sound
from waiting import equals, until

FAR = 300  # past any end of a track
WHOLE_TIME = round(clips.SECONDS * 1000)

TWIPS_PER_PIXEL = 15
# Tops of the volume knob in the settings, twips.
VOLUME_RECORD = 22
TOP, MIDDLE, ONE_ABOVE_BOTTOM, BOTTOM = 120, 367, 614, 615
LISTEN_SECONDS = 0.4
SETTLE_SECONDS = 0.6  # what is on its way to the sink when a volume is changed
TABS_TO_POSITION, TABS_FROM_THERE_TO_VOLUME = 5, 9


@pytest.fixture
def playing(desk: Desk) -> Remote:
    """The remote of a player whose clip plays from its beginning in sight, as loud as it can."""
    shared = Remote(desk.shared("sliders", start_in_sight))
    shared.play()
    shared.leave_buttons()
    shared.player.seek(0)
    knob = shared.rect(VOLUME_KNOB)
    if knob.top != shared.player.rect(REMOTE).top + TRACK_TOP:
        shared.pointer.drag(knob.centre, (knob.centre[0], knob.centre[1] - FAR))
    shared.player.wait_for(volume=LOUDEST)
    return shared


@pytest.fixture
def paused(playing: Remote) -> Remote:
    playing.click(PAUSE_BUTTON)
    playing.player.wait_for(state=PAUSED, visible=1)
    playing.leave_buttons()
    return playing


def knob_at(remote: Remote, milliseconds: int) -> Rect:
    """Seeks and waits for the knob, which follows at the next tick of its timer. It comes from far
    away: beside its place it would look as if it had arrived."""
    window, knob = remote.player.rect(REMOTE), remote.rect(POSITION_KNOB)
    room = TRACK_RIGHT - TRACK_LEFT - knob.width
    for target in ((milliseconds + WHOLE_TIME // 2) % WHOLE_TIME, milliseconds):
        remote.player.seek(target / 1000)
        wanted = window.left + TRACK_LEFT + room * target / WHOLE_TIME
        until(lambda: abs(remote.rect(POSITION_KNOB).left - wanted) <= 1, 5, f"knob at {wanted}")
    return remote.rect(POSITION_KNOB)


def shown_frame(remote: Remote, screen: Screen) -> int:
    return clips.frame_number(screen.pixels(), remote.player.client())


# ---- position ----


def test_position_knob_stops_at_both_ends(paused: Remote) -> None:
    window = paused.player.rect(REMOTE)
    knob = knob_at(paused, 3500)
    x, y = knob.centre
    with paused.pointer.held((x, y)):
        paused.pointer.glide((x, y), (x + FAR, y + 80))
        wanted = window.left + TRACK_RIGHT - knob.width
        equals(lambda: paused.rect(POSITION_KNOB).left, wanted, 5, "the right end")
        equals(lambda: paused.text(CLOCK), "00:00:10", 5, "the time of the knob")
        paused.pointer.glide((x + FAR, y + 80), (x - FAR, y - 80))
        wanted = window.left + TRACK_LEFT
        equals(lambda: paused.rect(POSITION_KNOB).left, wanted, 5, "the left end")
        equals(lambda: paused.text(CLOCK), "00:00:00", 5, "the time of the knob")
        assert paused.rect(POSITION_KNOB).top == knob.top
        assert paused.player.playback().position == 3500, "nothing is sought before the release"
    paused.player.wait_for(position=0)


def test_drag_while_playing_does_not_seek(playing: Remote) -> None:
    player = playing.player
    x, y = playing.rect(POSITION_KNOB).centre
    with playing.pointer.held((x, y)):
        playing.pointer.glide((x, y), (x + 150, y))
        knob = playing.rect(POSITION_KNOB)
        equals(lambda: playing.text(CLOCK), "00:00:06", 5, "the time of the knob")
        position = player.playback().position
        until(lambda: player.playback().position > position + 300, 5, "it plays on")
        assert player.playback().position < 4000
        assert playing.text(CLOCK) == "00:00:06"
        assert playing.rect(POSITION_KNOB) == knob, "the knob stays in the hand"
    until(lambda: player.playback().position >= 6000, 5, "it plays from there")
    assert player.playback().state == PLAYING


def test_release_at_the_right_end_seeks_to_the_last_whole_second(paused: Remote) -> None:
    x, y = knob_at(paused, 2000).centre
    paused.pointer.drag((x, y), (x + FAR, y))
    last = paused.player.playback().duration // 1000 * 1000
    paused.player.wait_for(position=last, state=PAUSED)


@pytest.mark.parametrize(("pixels", "second"), [(123, 5), (122, 4), (60, 2), (230, 9)])
def test_seek_with_the_knob_shows_the_frame(
    paused: Remote, screen: Screen, pixels: int, second: int
) -> None:
    x, y = knob_at(paused, 0).centre
    paused.pointer.drag((x, y), (x + pixels, y))
    paused.player.wait_for(position=second * 1000, state=PAUSED, visible=1)
    until(
        lambda: abs(shown_frame(paused, screen) - second * clips.RATE) <= 1,
        5,
        f"the first frame of second {second} is shown",
    )
    equals(lambda: paused.text(CLOCK), f"00:00:{second:02}", 5, "the read-out")


def test_knob_released_where_it_was_pressed_seeks_to_a_whole_second(paused: Remote) -> None:
    paused.pointer.click(knob_at(paused, 3700).centre)
    paused.player.wait_for(position=3000, state=PAUSED)


# ---- volume ----


def loudness(sound: Sound) -> float:
    return sound.record(LISTEN_SECONDS, skip=SETTLE_SECONDS).level()


def loudness_at_the_start(desk: Desk, top: int) -> float:
    """With this place of the knob in the settings."""
    player = desk.player()
    player.folder.set_options({VOLUME_RECORD: str(top)})
    player.open()
    place = Remote(player).rect(VOLUME_KNOB).top - player.rect(REMOTE).top
    assert place == round(top / TWIPS_PER_PIXEL)
    level = loudness(desk.sound)
    desk.finish_all()
    return level


@pytest.fixture(scope="module")
def loudest(desk: Desk) -> float:
    level = loudness_at_the_start(desk, TOP)
    assert level > -40
    return level


@pytest.mark.parametrize(("top", "quieter"), [(MIDDLE, 12.5), (ONE_ABOVE_BOTTOM, 24.9)])
def test_volume_of_the_settings_is_heard(
    desk: Desk, loudest: float, top: int, quieter: float
) -> None:
    assert loudest - loudness_at_the_start(desk, top) == pytest.approx(quieter, abs=1.5)


def test_bottom_of_the_volume_track_is_silence(desk: Desk) -> None:
    assert loudness_at_the_start(desk, BOTTOM) == SILENCE_DB


def test_volume_knob_stops_at_both_ends(playing: Remote, sound: Sound) -> None:
    player, window = playing.player, playing.player.rect(REMOTE)
    knob = playing.rect(VOLUME_KNOB)
    assert knob.top == window.top + TRACK_TOP
    x, y = knob.centre
    with playing.pointer.held((x, y)):
        playing.pointer.glide((x, y), (x + 40, y + FAR))
        wanted = window.top + TRACK_BOTTOM - knob.height
        equals(lambda: playing.rect(VOLUME_KNOB).top, wanted, 5, "the bottom end")
        player.wait_for(volume=SILENT)
        assert loudness(sound) == SILENCE_DB, "it is silent before the release"
        playing.pointer.glide((x + 40, y + FAR), (x, y - FAR))
        equals(lambda: playing.rect(VOLUME_KNOB), knob, 5, "the top end")
        player.wait_for(volume=LOUDEST)
    assert loudness(sound) > -40
    assert player.playback().state == PLAYING


def test_volume_follows_the_knob(playing: Remote) -> None:
    x, y = playing.rect(VOLUME_KNOB).centre
    playing.pointer.drag((x, y), (x, y + 11))
    playing.player.wait_for(volume=-834)  # a third of the way down
    playing.pointer.drag((x, y + 11), (x, y + 22))
    playing.player.wait_for(volume=-1667)
    playing.pointer.drag((x, y + 22), (x, y + 32))
    playing.player.wait_for(volume=-2425)


# ---- keys ----


def tab_to(remote: Remote, tabs: int, knob: str, screen: Screen) -> None:
    """So many controls further; that the knob has the keys shows by the ring around it."""

    def looks() -> bytes:
        box = remote.rect(knob)
        return screen.pixels()[box.top : box.bottom, box.left : box.right].tobytes()

    without = looks()
    remote.pointer.key(*["Tab"] * tabs)
    until(lambda: looks() != without, 5, f"a ring is seen around {knob}")


def test_arrow_keys_work_the_knobs(player: Player, screen: Screen) -> None:
    start_in_sight(player)
    remote, key = Remote(player), player.pointer.key
    player.pause()
    knob_at(remote, 2300)
    remote.take_keys()
    tab_to(remote, TABS_TO_POSITION, POSITION_KNOB, screen)
    for name, position in {"Right": 7000, "Up": WHOLE_TIME, "Left": 5000, "Down": 0}.items():
        key(name)
        player.wait_for(position=position)

    top = remote.rect(VOLUME_KNOB).top
    tab_to(remote, TABS_FROM_THERE_TO_VOLUME, VOLUME_KNOB, screen)
    key("Down", "Down", "Down", "Down")
    player.wait_for(volume=-500)
    assert remote.rect(VOLUME_KNOB).top > top
    for name, volume in {"End": SILENT, "Up": -2375, "Home": LOUDEST}.items():
        key(name)
        player.wait_for(volume=volume)
    assert remote.rect(VOLUME_KNOB).top == top
    assert player.playback().state == PAUSED
