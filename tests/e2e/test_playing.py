"""What is seen and heard of a clip."""

from __future__ import annotations

import time

import clips
import pytest
from conftest import Desk
from player import LOUDEST, PLAYING, SET_RATE, SET_VOLUME, SILENT, STOPPED, Player
from screen import Screen, is_near
from sound import Sound
from waiting import equals, until

SETTLE_SECONDS = 0.6  # what is on its way to the sink when a volume is changed
LISTEN_SECONDS = 1.0
LATE_FRAMES = 8  # how far a picture that is drawn without a graphics card is behind the position


@pytest.fixture
def playing(desk: Desk) -> Player:
    """The clip plays from its beginning, at normal speed and full volume, in sight."""
    shared = desk.shared("playing", Player.open)
    shared.media(SET_RATE, 1000)
    shared.media(SET_VOLUME, LOUDEST)
    shared.seek(0)
    if shared.playback().state != PLAYING:
        shared.play()
    return shared


def shown_frame(player: Player, screen: Screen) -> int:
    return clips.frame_number(screen.pixels(), player.client())


@pytest.mark.parametrize("second", [0, 3, 8])
def test_colours_of_the_picture(playing: Player, screen: Screen, second: int) -> None:
    playing.pause_at(second + 0.5)
    wanted = clips.SECOND_COLOURS[second]

    def is_shown() -> bool:
        return is_near(clips.background(screen.pixels(), playing.client()), wanted)

    until(is_shown, 5, f"the picture of second {second} is shown")


def test_picture_keeps_its_proportions(playing: Player, screen: Screen) -> None:
    playing.pause_at(1.5)
    client = playing.client()
    picture = clips.picture_in(client)
    assert picture.top - client.top > 20
    above = (client.centre[0], (client.top + picture.top) // 2)
    inside = picture.point(0.5, 0.97)

    def bars_are_black() -> bool:
        pixels = screen.pixels()
        bar, edge = pixels[above[1], above[0]], pixels[inside[1], inside[0]]
        return is_near(tuple(bar), (0, 0, 0)) and is_near(tuple(edge), clips.SECOND_COLOURS[1])

    until(bars_are_black, 5, "black bars above the picture, none inside")


@pytest.mark.parametrize("second", [5.0, 1.0, 9.0, 7.48])
def test_seek_shows_the_frame_of_that_time(
    playing: Player, screen: Screen, second: float
) -> None:
    playing.pause_at(second)
    wanted = round(second * clips.RATE)
    until(
        lambda: abs(shown_frame(playing, screen) - wanted) <= 1, 5, f"frame {wanted} is shown"
    )
    equals(lambda: playing.playback().position, round(second * 1000), 1, "the position")


def test_picture_moves_while_it_plays(playing: Player, screen: Screen) -> None:
    first = shown_frame(playing, screen)
    until(lambda: shown_frame(playing, screen) > first + 10, 5, "later frames are shown")


def test_pause_keeps_position_and_picture(playing: Player, screen: Screen) -> None:
    until(lambda: playing.playback().position > 1000, 5, "it plays")
    playing.pause()
    position = playing.playback().position
    wanted = position / 1000 * clips.RATE
    until(
        lambda: abs(shown_frame(playing, screen) - wanted) <= LATE_FRAMES,
        3,
        f"the picture of {position} ms is shown",
    )
    assert playing.playback().position == position
    playing.play()
    until(lambda: playing.playback().position > position, 5, "it goes on")


def test_tone_has_its_frequency(playing: Player, sound: Sound) -> None:
    heard = sound.record(LISTEN_SECONDS, skip=SETTLE_SECONDS)
    assert heard.frequency() == pytest.approx(clips.TONE_HERTZ, rel=0.01)


def test_volume_is_in_hundredths_of_a_decibel(playing: Player, sound: Sound) -> None:
    loud = sound.record(LISTEN_SECONDS, skip=SETTLE_SECONDS).level()
    playing.media(SET_VOLUME, -2500)
    quiet = sound.record(LISTEN_SECONDS, skip=SETTLE_SECONDS).level()
    playing.media(SET_VOLUME, SILENT)
    silent = sound.record(LISTEN_SECONDS, skip=SETTLE_SECONDS).level()
    assert loud > -40
    assert loud - quiet == pytest.approx(25.0, abs=1.0)
    assert silent < -90
    assert playing.playback().volume == SILENT


def test_double_rate_halves_the_time(playing: Player) -> None:
    playing.media(SET_RATE, 2000)
    playing.seek(1.0)
    until(lambda: playing.playback().position > 1200, 5, "it plays")
    began, at = time.monotonic(), playing.playback().position / 1000
    until(lambda: playing.playback().state == STOPPED, 10, "the clip ends")
    assert time.monotonic() - began == pytest.approx((clips.SECONDS - at) / 2, rel=0.1)


def test_end_of_clip_stops_at_its_duration(playing: Player) -> None:
    playing.seek(9.0)
    until(lambda: playing.playback().state == STOPPED, 10, "the clip ends")
    playback = playing.playback()
    assert playback.position == playback.duration
    assert playback.duration == pytest.approx(clips.SECONDS * 1000, abs=50)


def test_play_at_the_end_starts_again(playing: Player) -> None:
    playing.seek(9.5)
    until(lambda: playing.playback().state == STOPPED, 10, "the clip ends")
    playing.play()
    assert playing.playback().position < 5000
    until(lambda: playing.playback().position > 300, 5, "it plays")


@pytest.mark.parametrize(
    "name",
    [
        "mpeg4-mp3.avi",
        "mjpeg-pcm.avi",
        "raw-pcm.avi",
        "mpeg1.mpg",
        "mpeg2.mpg",
        "wmv2.wmv",
        "h264-aac.mp4",
        "tone.mp3",
        "tone.wav",
        "tone.au",
        "silent.avi",
        "odd-size.avi",
        "variable-rate.mp4",
    ],
)
def test_every_kind_of_clip_plays_to_its_end(player: Player, name: str) -> None:
    player.open_any(clips.path(name))
    until(lambda: player.playback().position > 300, 10, "it plays")
    until(lambda: player.playback().state == STOPPED, 10, "it ends")
    playback = player.playback()
    assert playback.position == playback.duration
