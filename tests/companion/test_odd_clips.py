"""Clips whose pictures and sounds do not come as one would think: pauses, lost pieces, a shape that
only the container knows. Each is made of a usual one without touching its frames."""

from __future__ import annotations

import pathlib
import subprocess

import evidence
import pytest
import sources
from framewright import Framewright
from marked_clip import Clip
from test_cuts import assert_done, assert_refused

IN_STEP = 0.005  # seconds
PAUSE_FROM, PAUSE = 100, 20  # a frame's number, seconds
RATE = 25


def made(target: pathlib.Path, *arguments: object) -> pathlib.Path:
    command = ["ffmpeg", "-nostdin", "-v", "error", "-y", *map(str, arguments), str(target)]
    subprocess.run(command, check=True)
    return target


@pytest.fixture
def paused(tmp_path: pathlib.Path) -> pathlib.Path:
    """From one frame on all comes later, so that the one before is shown for as long. The frames a
    second that the container tells are a mean over that."""
    later = ("-vf", f"setpts=PTS+gte(N\\,{PAUSE_FROM})*{PAUSE}/TB", "-fps_mode", "passthrough")
    encoded = ("-c:v", "libx264", "-preset", "ultrafast", "-g", 60)
    film = made(tmp_path / "paused.mp4", "-i", sources.SILENT.path, *later, *encoded)
    paused = made(tmp_path / "paused.mkv", "-i", film, "-c", "copy")
    facts = evidence.stream_of(paused, "video")
    assert facts is not None and facts["avg_frame_rate"] != "25/1"
    return paused


def numbers_of(program: Framewright, source: pathlib.Path, begin: float, end: float) -> list[int]:
    output = source.with_name("cut.avi")
    assert_done(program.cut(source, output, begin, end, "--overwrite"), program)
    numbers = evidence.frames_of(output).numbers
    assert None not in numbers
    return [number for number in numbers if number is not None]


def test_no_frame_is_missed_beside_a_pause(program: Framewright, paused: pathlib.Path) -> None:
    assert numbers_of(program, paused, 1, 3) == list(range(RATE, 3 * RATE))
    after = PAUSE + 5
    assert numbers_of(program, paused, after, after + 2) == list(range(5 * RATE, 7 * RATE))


def test_frame_that_stays_can_be_cut(program: Framewright, paused: pathlib.Path) -> None:
    assert numbers_of(program, paused, 10, 15) == [PAUSE_FROM - 1] * (5 * RATE)


def test_frame_that_stays_ends_with_the_fragment(
    program: Framewright, paused: pathlib.Path
) -> None:
    before = list(range(2 * RATE, PAUSE_FROM))
    stays = [PAUSE_FROM - 1] * (10 * RATE - PAUSE_FROM)
    assert numbers_of(program, paused, 2, 10) == before + stays


@pytest.mark.parametrize(("begin", "end"), [(1.0, 7.0), (4.0, 7.0)])
def test_last_picture_stays_while_the_sound_goes_on(
    program: Framewright, tmp_path: pathlib.Path, begin: float, end: float
) -> None:
    picture, sound = sources.SILENT.path, sources.PLAIN.path
    source = made(
        tmp_path / "short picture.mp4",
        *("-t", 2, "-i", picture, "-i", sound, "-map", "0:v", "-map", "1:a", "-c", "copy"),
    )
    numbers = numbers_of(program, source, begin, end)
    last = len(evidence.frames_of(source).numbers) - 1
    wanted = [min(int(begin * RATE) + place, last) for place in range(int((end - begin) * RATE))]
    assert numbers == wanted
    track = evidence.track_of(source.with_name("cut.avi"))
    assert track.length == pytest.approx(end - begin, abs=IN_STEP)


@pytest.mark.parametrize("clip", ["plain.mp4", "hevc-opus.mkv"])
def test_sound_stays_in_step_after_a_lost_piece(
    program: Framewright, tmp_path: pathlib.Path, clip: str
) -> None:
    copied = ("-i", sources.named(clip).path, "-c", "copy")
    whole = made(tmp_path / "whole.mkv", *copied)
    source = made(tmp_path / "lost.mkv", *copied, "-bsf:a", "noise=drop=eq(n\\,70)")
    output = tmp_path / "cut.wav"
    assert_done(program.cut(source, output, 0, 8), program)
    before = evidence.track_of(whole).clicks
    after = [click for click in evidence.track_of(output).clicks if click > 2.5]
    assert len(after) >= 5
    for click in after:
        assert min(abs(click - was) for was in before) < IN_STEP


def test_clock_of_the_sound_that_goes_wrong_is_followed(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    """Its times say that it lasts a little longer than its samples do."""
    copied = ("-i", sources.PLAIN.path, "-c", "copy")
    whole = made(tmp_path / "whole.mkv", *copied)
    source = made(tmp_path / "slow.mkv", *copied, "-bsf:a", "setts=ts=TS*1.002")
    output = tmp_path / "cut.wav"
    assert_done(program.cut(source, output, 0, 8), program)
    before = evidence.track_of(whole).clicks
    after = evidence.track_of(output).clicks
    assert len(after) == len(before)
    for was, click in zip(before, after):
        assert click == pytest.approx(was * 1.002, abs=IN_STEP)


def late_sound(tmp_path: pathlib.Path, clip: Clip) -> pathlib.Path:
    picture = ("-i", clip.path, "-itsoffset", 1, "-i", clip.path)
    streams = ("-map", "0:v", "-map", "1:a", "-c", "copy")
    return made(tmp_path / "late.mkv", *picture, *streams)


def test_copy_keeps_sound_in_step_that_begins_late(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    source = late_sound(tmp_path, sources.named("msmpeg4-pcm.avi"))
    output = tmp_path / "cut.avi"
    assert_done(program.cut(source, output, 0, 6, "--format", "copy"), program)
    clicks = evidence.track_of(output).clicks
    assert len(clicks) >= 4
    for click in clicks:
        assert abs(click - round(click)) < IN_STEP
    assert clicks[0] > 0.9


def test_copy_that_could_not_keep_sound_in_step_is_refused(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    clip = sources.named("mpeg4-mp3.avi")
    source = late_sound(tmp_path, clip)
    outcome = program.cut(source, tmp_path / "cut.avi", 0, 6, "--format", "copy")
    assert_refused(outcome, program)


def test_copy_begins_with_a_picture_that_comes_late(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    clip = sources.named("mjpeg.avi").path
    source = made(tmp_path / "late.mkv", "-itsoffset", 0.5, "-i", clip, "-c", "copy")
    output = tmp_path / "cut.avi"
    assert_done(program.cut(source, output, 0, 2, "--format", "copy"), program)
    numbers = evidence.frames_of(output).numbers
    assert numbers[:3] == [0, 1, 2]


@pytest.mark.parametrize("ending", ["mp4", "mkv"])
def test_shape_that_only_the_container_knows_is_kept(
    program: Framewright, tmp_path: pathlib.Path, ending: str
) -> None:
    wide = ("-c", "copy", "-aspect", "2:1")
    source = made(tmp_path / f"wide.{ending}", "-i", sources.SILENT.path, *wide)
    still, film = tmp_path / "still.bmp", tmp_path / "film.avi"
    assert_done(program.cut(source, still, 1, None), program)
    assert_done(program.cut(source, film, 1, 2), program)
    assert evidence.still_of(still).size == (360, 180)
    assert evidence.frames_of(film).size == (360, 180)
