"""What a fragment holds, for every kind of job and source, and what happens when it cannot be
made."""

from __future__ import annotations

import dataclasses
import os
import pathlib
import re
import resource
import shutil
import signal
from fractions import Fraction

import evidence
import numpy as np
import overlay
import pytest
import sources
import waiting
from framewright import (
    BAD_LINE,
    DONE,
    FAILED,
    Argument,
    Framewright,
    Outcome,
    cut_arguments,
)
from marked_clip import Clip, looped

TOLD_IN_TIME = 30.0


def name_of(clip: Clip) -> str:
    return clip.name


def assert_done(outcome: Outcome, program: Framewright) -> None:
    assert outcome.crash(program.wine) is None, outcome.err
    assert outcome.code == DONE, outcome.err


def assert_refused(outcome: Outcome, program: Framewright, *codes: int) -> None:
    """With a sentence for a person."""
    assert outcome.crash(program.wine) is None, outcome.err
    assert outcome.code in (codes or (FAILED,)), outcome.err
    assert re.search(r"[a-z]{2,} .*[a-z]{2,}", outcome.sentence), outcome.err
    assert "could not be made (" not in outcome.sentence, "what a library says is no sentence"


def names_in(folder: pathlib.Path) -> list[str]:
    return sorted(path.name for path in folder.iterdir())


def cut_exactly(
    program: Framewright,
    clip: Clip,
    begin: float,
    end: float,
    output: pathlib.Path,
    *options: Argument,
) -> None:
    assert_done(program.cut(clip.path, output, begin, end, *options), program)
    judge = evidence.video_differences
    if "--sound" in options or output.suffix in (".wav", ".mp3"):
        judge = evidence.sound_differences
    assert judge(output, clip, begin, end) == []
    assert names_in(output.parent) == [output.name]


# ---- which frames ----


@pytest.mark.parametrize("clip", sources.PICTURE_CLIPS, ids=name_of)
def test_every_container_is_cut_between_its_key_frames(
    clip: Clip, program: Framewright, tmp_path: pathlib.Path
) -> None:
    """The rest of what containers can do wrong is in the matrix."""
    cut_exactly(program, clip, 3.386, 5.75, tmp_path / "cut.avi")


@pytest.mark.parametrize(
    ("begin", "end", "first", "last"),
    [
        (0.0, 1.0, 0, 24),
        (1.0, 2.0, 25, 49),
        (1.02, 2.02, 25, 50),
        (1.039, 2.001, 25, 50),
        (3.4, 3.44, 85, 85),
        (3.41, 3.42, 85, 85),
        (3.386, 5.75, 84, 143),
        (7.96, 8.0, 199, 199),
        (7.5, 60.0, 187, 199),
        (0.0, 8.0, 0, 199),
    ],
)
def test_a_fragment_holds_what_is_shown_between_its_bounds(
    begin: float, end: float, first: int, last: int, program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.avi"
    cut_exactly(program, sources.PLAIN, begin, end, output)
    assert evidence.frames_of(output).numbers == list(range(first, last + 1))


@pytest.mark.parametrize(
    ("begin", "end", "first", "last"),
    [(0.0, 1.001, 0, 29), (1.001, 2.002, 30, 59), (1.02, 2.5, 30, 74), (7.5, 60.0, 224, 239)],
)
def test_a_broken_rate_is_cut_as_exactly(
    begin: float, end: float, first: int, last: int, program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.avi"
    cut_exactly(program, sources.NTSC_CLIP, begin, end, output)
    frames = evidence.frames_of(output)
    assert frames.numbers == list(range(first, last + 1))
    assert frames.rate == Fraction(30000, 1001)


@pytest.mark.parametrize("clip", [sources.SURROUND, sources.MONO, sources.SILENT], ids=name_of)
@pytest.mark.parametrize("kind", ["plays", "smaller"])
def test_every_number_of_channels_is_cut(
    clip: Clip, kind: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    cut_exactly(program, clip, 3.386, 5.75, tmp_path / "cut.avi", "--format", kind)


def test_one_channel_stays_one(program: Framewright, tmp_path: pathlib.Path) -> None:
    output = tmp_path / "cut.wav"
    cut_exactly(program, sources.MONO, 1.0, 3.0, output)
    facts = evidence.stream_of(output, "audio")
    assert facts is not None
    assert (facts["channels"], facts["sample_rate"]) == (1, "44100")


def test_a_whole_clip_of_one_second_is_cut(program: Framewright, tmp_path: pathlib.Path) -> None:
    cut_exactly(program, sources.ONE_SECOND, 0.0, 1.0, tmp_path / "cut.avi")


@pytest.mark.parametrize("percentage", [50, 40, 33])
@pytest.mark.parametrize("clip", [sources.PLAIN, sources.NTSC_CLIP], ids=name_of)
def test_a_share_of_the_frames_leaves_length_and_sync_alone(
    clip: Clip, percentage: int, program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.avi"
    outcome = program.cut(clip.path, output, 2.01, 6.01, "--keep", str(percentage))
    assert_done(outcome, program)
    want = evidence.wanted(clip, 2.01, 6.01)
    frames = evidence.frames_of(output)
    assert clip.picture is not None
    fps = float(clip.picture.fps)
    assert float(frames.rate) == pytest.approx(fps * percentage / 100, rel=0.002)
    count = (want.last - want.first + 1) * percentage / 100
    assert abs(len(frames.numbers) - count) < 1.01
    due = [want.first + (time - frames.times[0]) * fps for time in frames.times]
    assert frames.numbers[0] == want.first
    assert all(n is not None and abs(n - d) < 1.01 for n, d in zip(frames.numbers, due))
    assert evidence.sync_differences(output, clip, want, frames.times[0]) == []


def test_half_the_frames_are_every_second_one(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.avi"
    assert_done(program.cut(sources.PLAIN.path, output, 2.0, 6.0, "--keep", "50"), program)
    assert evidence.frames_of(output).numbers == list(range(50, 150, 2))


@pytest.mark.parametrize(("begin", "end"), [(0.0, 3.0), (2.35, 5.55), (6.07, 20.0)])
def test_an_uneven_rate_keeps_order_length_and_sync(
    begin: float, end: float, program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.avi"
    assert_done(program.cut(sources.UNEVEN.path, output, begin, end), program)
    want, frames = evidence.wanted(sources.UNEVEN, begin, end), evidence.frames_of(output)
    times = evidence.source_of(sources.UNEVEN).times
    shown = [number for number in frames.numbers if number is not None]
    assert len(shown) == len(frames.numbers)
    assert shown == sorted(shown)
    assert set(shown) == set(range(want.first, want.last + 1))
    grain = 1 / float(frames.rate)
    length = len(shown) * grain
    # The last frame is shown up to the fragment's end, or up to its own.
    last = min(end, times[want.last] + grain)
    assert last - grain / 2 < want.begin + length < want.end + grain
    late = [
        time - frames.times[0] - (times[number] - want.begin)
        for number, time in zip(shown, frames.times)
    ]
    # A frame that is repeated is shown later than it begins; the longest lasts 0.06 s.
    assert -grain / 2 - 0.001 < min(late) and max(late) < 0.06 + grain / 2
    want = dataclasses.replace(want, end=want.begin + length)
    assert evidence.sync_differences(output, sources.UNEVEN, want, frames.times[0]) == []


# ---- how the picture stands ----


@pytest.mark.parametrize("degrees", [90, 180, 270])
def test_a_turned_clip_comes_out_upright(
    degrees: int, program: Framewright, tmp_path: pathlib.Path
) -> None:
    clip, output = sources.TURNED[degrees], tmp_path / "cut.avi"
    cut_exactly(program, clip, 3.386, 5.75, output)
    assert evidence.frames_of(output).size == (320, 180)


def combing(path: pathlib.Path, size: tuple[int, int]) -> float:
    """How much each row of the lower third, where a bar moves, differs from both its neighbours."""
    frames = overlay.limited_lumas(path, size)[:, size[1] * 3 // 4 + 4 : size[1] * 9 // 10 - 4]
    rows = frames.astype(int)
    inner = rows[:, 1:-1]
    off = np.minimum(np.abs(inner - rows[:, :-2]), np.abs(inner - rows[:, 2:]))
    return float((off > 40).mean())


def test_an_interlaced_clip_comes_out_without_combs(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    clip, output = sources.INTERLACED, tmp_path / "cut.avi"
    cut_exactly(program, clip, 3.386, 5.75, output, "--quality", "best")
    assert clip.picture is not None
    assert combing(clip.path, clip.picture.size) > 0.04
    assert combing(output, clip.picture.size) < 0.01


def test_an_anamorphic_clip_is_shown_as_wide_as_before(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.avi"
    cut_exactly(program, sources.ANAMORPHIC, 3.386, 5.75, output)
    facts = evidence.stream_of(output, "video")
    assert facts is not None
    told = facts.get("sample_aspect_ratio", "1:1").replace(":", "/")
    pixel_aspect = Fraction(told) if not told.startswith("0") else Fraction(1)
    shown = facts["width"] * pixel_aspect / facts["height"]
    assert float(shown) == pytest.approx(16 / 9, rel=0.01)


# ---- stills ----


@pytest.mark.parametrize(
    "clip",
    [
        sources.PLAIN,
        sources.UNEVEN,
        sources.ANAMORPHIC,
        sources.INTERLACED,
        *sources.TURNED.values(),
    ],
    ids=name_of,
)
@pytest.mark.parametrize("begin", [0.0, 1.0, 3.386, 7.93])
def test_a_still_is_the_frame_shown_then(
    clip: Clip, begin: float, program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "still.bmp"
    assert_done(program.cut(clip.path, output, begin, None), program)
    assert evidence.still_differences(output, clip, begin) == []
    assert names_in(tmp_path) == ["still.bmp"]


# ---- pictures over the fragment ----


@pytest.mark.parametrize("bits", [24, 32])
@pytest.mark.parametrize("per_mille", [(0, 0), (1000, 1000), (500, 500), (333, 777), (1, 999)])
def test_a_picture_lies_where_it_is_asked_for(
    bits: int, per_mille: tuple[int, int], program: Framewright, tmp_path: pathlib.Path
) -> None:
    pixels = overlay.painted((38, 31))
    picture = overlay.write_bmp(tmp_path / "picture.bmp", pixels, bits)
    shown = overlay.opaque((38, 31)) if bits == 24 else pixels
    x, y = map(str, per_mille)
    lay = ("--picture", picture, "--picture-x", x, "--picture-y", y)
    plain, covered = tmp_path / "plain.avi", tmp_path / "covered.avi"
    for output, options in ((plain, ()), (covered, lay)):
        outcome = program.cut(
            sources.PLAIN.path, output, 3.386, 4.0, "--format", "lossless", *options
        )
        assert_done(outcome, program)
    size = (320, 180)
    frames = overlay.planes_of(plain, size), overlay.planes_of(covered, size)
    at = overlay.place(per_mille, size, (38, 31))
    assert overlay.differences(*frames, shown, at, noise=3) == []


@pytest.mark.parametrize(("kind", "noise"), [("lossless", 3), ("mjpeg", 12)])
@pytest.mark.parametrize(
    ("clip", "weights"),
    [(sources.PLAIN, overlay.REC_601), (sources.TAGGED, overlay.REC_709)],
    ids=["601", "709"],
)
def test_a_picture_changes_no_colours_around_it(
    clip: Clip,
    weights: np.ndarray,
    kind: str,
    noise: float,
    program: Framewright,
    tmp_path: pathlib.Path,
) -> None:
    pixels = overlay.plain((48, 32))
    picture = overlay.write_bmp(tmp_path / "picture.bmp", pixels, 24)
    lay = ("--picture", picture, "--picture-x", "0", "--picture-y", "1000")
    outputs = tmp_path / "plain.avi", tmp_path / "covered.avi"
    for output, options in zip(outputs, ((), lay)):
        shape = ("--format", kind, "--quality", "best")
        assert_done(program.cut(clip.path, output, 1.0, 1.4, *shape, *options), program)
    size = (320, 180)
    frames = [overlay.planes_of(output, size) for output in outputs]
    # Motion JPEG has the one kind of colours that it knows.
    weights = overlay.REC_601 if kind == "mjpeg" else weights
    found = overlay.differences(*frames, pixels, (0, 148), noise, weights, outside=noise - 3)
    assert found == []


def test_a_picture_that_is_none_is_refused(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    picture = tmp_path / "picture.bmp"
    picture.write_bytes(b"BM" + bytes(60))
    outcome = program.cut(
        sources.PLAIN.path, tmp_path / "cut.avi", 1.0, 2.0, "--picture", picture
    )
    assert_refused(outcome, program)
    assert names_in(tmp_path) == ["picture.bmp"]


# ---- formats ----

CODECS = {
    "plays": ["msmpeg4v3", "pcm_s16le"],
    "smaller": ["mpeg4", "mp3"],
    "mjpeg": ["mjpeg", "pcm_s16le"],
    "lossless": ["ffv1", "pcm_s16le"],
}


@pytest.mark.parametrize("quality", ["draft", "good", "best"])
@pytest.mark.parametrize("kind", CODECS)
def test_every_format_is_exact_in_every_quality(
    kind: str, quality: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.avi"
    cut_exactly(
        program, sources.PLAIN, 3.386, 5.75, output, "--format", kind, "--quality", quality
    )
    assert evidence.codecs(output) == CODECS[kind]


@pytest.mark.parametrize("kind", ["plays", "smaller", "mjpeg"])
def test_a_better_quality_takes_more_room(
    kind: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    sizes = []
    for quality in ("draft", "good", "best"):
        output = tmp_path / f"{quality}.avi"
        outcome = program.cut(
            sources.PLAIN.path, output, 3.0, 5.0, "--format", kind, "--quality", quality
        )
        assert_done(outcome, program)
        sizes.append(output.stat().st_size)
    assert sizes == sorted(set(sizes))


def test_lossless_is_without_loss(program: Framewright, tmp_path: pathlib.Path) -> None:
    output = tmp_path / "cut.avi"
    cut_exactly(program, sources.PLAIN, 2.0, 3.0, output, "--format", "lossless")
    size = (320, 180)
    source = overlay.limited_lumas(sources.PLAIN.path, size)[50:75]
    assert (overlay.limited_lumas(output, size) == source).all()


@pytest.mark.parametrize(("begin", "key"), [(3.386, 60), (2.4, 60), (0.5, 0), (7.93, 180)])
def test_a_copy_begins_with_the_key_frame_before(
    begin: float, key: int, program: Framewright, tmp_path: pathlib.Path
) -> None:
    clip, output = sources.named("msmpeg4-pcm.avi"), tmp_path / "cut.avi"
    end = begin + 1.5
    assert_done(program.cut(clip.path, output, begin, end, "--format", "copy"), program)
    assert evidence.codecs(output) == ["msmpeg4v3", "pcm_s16le"]
    assert evidence.frames_of(output).numbers[0] == key
    assert evidence.video_differences(output, clip, key / 25, end) == []


# ---- sound ----


@pytest.mark.parametrize("rate", [8000, 22050, 44100, 48000])
def test_an_mp3_has_the_rate_that_is_asked_for(
    rate: int, program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.mp3"
    cut_exactly(program, sources.PLAIN, 3.386, 5.75, output, "--mp3-rate", str(rate))
    assert evidence.mp3_header(output).rate == rate


def test_a_rate_that_mp3_does_not_know_becomes_the_nearest(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.mp3"
    cut_exactly(program, sources.PLAIN, 1.0, 3.0, output, "--mp3-rate", "30000")
    assert evidence.mp3_header(output).rate == 32000


@pytest.mark.parametrize("name", ["cut.wav", "cut.mp3", "cut.avi"])
@pytest.mark.parametrize(
    "clip", [sources.PLAIN, sources.SURROUND, sources.SOUND_CLIPS[0]], ids=name_of
)
def test_sound_alone_is_cut_exactly(
    clip: Clip, name: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    cut_exactly(program, clip, 3.386, 5.75, tmp_path / name, "--sound")
    assert len(evidence.codecs(tmp_path / name)) == 1


# ---- what is told ----


def percents(outcome: Outcome) -> list[int]:
    return [int(number) for number in re.findall(r"(\d+) ?%", outcome.err)]


def test_progress_rises_to_the_end(program: Framewright, tmp_path: pathlib.Path) -> None:
    outcome = program.cut(sources.PLAIN.path, tmp_path / "cut.avi", 0.0, 8.0)
    assert_done(outcome, program)
    told = percents(outcome)
    assert told == sorted(told) and told[-1] == 100
    assert outcome.out.strip()


def test_a_quiet_job_tells_no_progress(program: Framewright, tmp_path: pathlib.Path) -> None:
    outcome = program.cut(sources.PLAIN.path, tmp_path / "cut.avi", 0.0, 8.0, "--quiet")
    assert_done(outcome, program)
    assert outcome.err == ""


def test_times_may_be_minutes_and_hours(program: Framewright, tmp_path: pathlib.Path) -> None:
    output = tmp_path / "cut.avi"
    bounds = ("--from", "0:03.386", "--to", "0:00:05.75")
    assert_done(program.run("cut", sources.PLAIN.path, *bounds, "-o", output), program)
    assert evidence.video_differences(output, sources.PLAIN, 3.386, 5.75) == []


@pytest.mark.parametrize(
    "arguments",
    [
        ("cut",),
        ("paste", "in.mp4"),
        ("cut", "in.mp4", "--from", "soon", "--to", "2", "-o", "out.avi"),
        ("cut", "in.mp4", "--from", "1", "--to", "2", "-o", "out.avi", "--shiny"),
        ("cut", "in.mp4", "--from", "1", "--to", "2", "-o", "out.avi", "--keep", "many"),
        ("cut", "in.mp4", "--from", "1", "--to", "2", "-o", "out.avi", "--format", "round"),
        ("cut", "in.mp4", "--from", "1", "--to", "2", "-o"),
    ],
    ids=" ".join,
)
def test_a_bad_command_line_is_refused(
    arguments: tuple[str, ...], program: Framewright
) -> None:
    assert_refused(program.run(*arguments), program, BAD_LINE)


# ---- what cannot be done ----


@pytest.mark.parametrize(
    ("begin", "end"), [(5.0, 3.0), (3.0, 3.0), (9.0, 12.0), (-1.0, 2.0)]
)
@pytest.mark.parametrize("name", ["cut.avi", "cut.wav", "cut.mp3"])
def test_impossible_bounds_are_refused(
    begin: float, end: float, name: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    outcome = program.cut(sources.PLAIN.path, tmp_path / name, begin, end)
    assert_refused(outcome, program, FAILED, BAD_LINE)
    assert names_in(tmp_path) == []


@pytest.mark.parametrize("begin", [8.0, 8.4])
def test_a_still_at_the_end_is_the_last_frame(
    begin: float, program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "still.bmp"
    assert_done(program.cut(sources.PLAIN.path, output, begin, None), program)
    assert evidence.still_of(output).number == 199


@pytest.mark.parametrize("percentage", ["0", "101", "-5"])
def test_an_impossible_share_is_refused(
    percentage: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    outcome = program.cut(
        sources.PLAIN.path, tmp_path / "cut.avi", 1.0, 2.0, "--keep", percentage
    )
    assert_refused(outcome, program, FAILED, BAD_LINE)
    assert names_in(tmp_path) == []


@pytest.mark.parametrize("name", ["cut.wav", "cut.mp3"])
def test_sound_of_a_silent_clip_is_refused(
    name: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    assert_refused(program.cut(sources.SILENT.path, tmp_path / name, 1.0, 2.0), program)
    assert names_in(tmp_path) == []


@pytest.mark.parametrize("name", ["cut.avi", "cut.bmp"])
def test_a_picture_of_mere_sound_is_refused(
    name: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    clip = sources.SOUND_CLIPS[0]
    end = None if name.endswith(".bmp") else 2.0
    assert_refused(program.cut(clip.path, tmp_path / name, 1.0, end), program)
    assert names_in(tmp_path) == []


def test_a_source_that_is_missing_or_no_clip_is_refused(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    text, empty = tmp_path / "text.mp4", tmp_path / "empty.mp4"
    text.write_text("no clip at all\n" * 500)
    empty.touch()
    for source in (tmp_path / "missing.mp4", text, empty, tmp_path):
        assert_refused(program.cut(source, tmp_path / "cut.avi", 1.0, 2.0), program)
    assert names_in(tmp_path) == ["empty.mp4", "text.mp4"]


@pytest.mark.parametrize("name", ["cut.avi", "cut.wav", "cut.mp3", "cut.bmp"])
def test_a_folder_that_cannot_be_written_is_refused(
    name: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    end = None if name.endswith(".bmp") else 2.0
    for folder in (tmp_path / "missing", pathlib.Path("/proc")):
        assert_refused(program.cut(sources.PLAIN.path, folder / name, 1.0, end), program)
    assert names_in(tmp_path) == []


# ---- files that are there already ----


def test_an_old_file_stays_unless_it_may_be_replaced(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    output = tmp_path / "cut.avi"
    output.write_bytes(b"dear")
    assert_refused(program.cut(sources.PLAIN.path, output, 1.0, 2.0), program, FAILED, BAD_LINE)
    assert output.read_bytes() == b"dear"
    cut_exactly(program, sources.PLAIN, 1.0, 2.0, output, "--overwrite")


@pytest.mark.parametrize("name", ["cut.avi", "cut.wav", "cut.mp3", "cut.bmp"])
def test_a_failed_job_leaves_the_old_file(
    name: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    output, end = tmp_path / name, None if name.endswith(".bmp") else 12.0
    output.write_bytes(b"dear")
    source = (sources.SOUND_CLIPS[0] if end is None else sources.PLAIN).path
    assert_refused(program.cut(source, output, 9.0, end, "--overwrite"), program)
    assert output.read_bytes() == b"dear"
    assert names_in(tmp_path) == [name]


def test_a_source_is_never_its_own_output(program: Framewright, tmp_path: pathlib.Path) -> None:
    clip = sources.named("msmpeg4-pcm.avi")
    source = tmp_path / "clip.avi"
    shutil.copy(clip.path, source)
    inner = tmp_path / "inner"
    inner.mkdir()
    (tmp_path / "link.avi").symlink_to(source)
    for output in (source, inner / ".." / "clip.avi", tmp_path / "link.avi"):
        outcome = program.cut(source, output, 1.0, 2.0, "--overwrite")
        assert_refused(outcome, program, FAILED, BAD_LINE)
        assert source.read_bytes() == clip.path.read_bytes()


# ---- names ----

NAMES = (
    "blanks in the name.mp4",
    "Grüße_日本語_Привет.mp4",
    "it's 100%s (a) [b] {c} & more;.mp4",
    "clip%03d.mp4",
    "-minus.mp4",
)


@pytest.mark.parametrize("name", NAMES)
@pytest.mark.parametrize("suffix", [".avi", ".wav", ".mp3", ".bmp"])
def test_any_name_will_do(
    name: str, suffix: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    source, folder = tmp_path / name, tmp_path / "out"
    folder.mkdir()
    shutil.copy(sources.PLAIN.path, source)
    output = folder / (name.removesuffix(".mp4") + suffix)
    end = None if suffix == ".bmp" else 2.0
    assert_done(program.cut(source, output, 1.0, end), program)
    assert names_in(folder) == [output.name]


@pytest.mark.parametrize("suffix", [".avi", ".wav", ".mp3", ".bmp"])
def test_a_long_path_will_do(
    suffix: str, program: Framewright, tmp_path: pathlib.Path
) -> None:
    folder = tmp_path / ("deep " * 20 + "1") / ("deeper " * 20 + "2") / ("deepest " * 10 + "3")
    folder.mkdir(parents=True)
    assert len(str(folder)) > 300
    shutil.copy(sources.PLAIN.path, folder / "clip.mp4")
    end = None if suffix == ".bmp" else 2.0
    assert_done(program.cut(folder / "clip.mp4", folder / f"cut{suffix}", 1.0, end), program)
    assert names_in(folder) == ["clip.mp4", f"cut{suffix}"]


def test_a_name_alone_is_in_the_current_folder(
    program: Framewright, tmp_path: pathlib.Path, monkeypatch: pytest.MonkeyPatch
) -> None:
    monkeypatch.chdir(tmp_path)
    shutil.copy(sources.PLAIN.path, tmp_path / "clip.mp4")
    line = ("cut", "clip.mp4", "--from", "1", "--to", "2", "-o", "cut.avi")
    assert_done(program.run(*line), program)
    assert names_in(tmp_path) == ["clip.mp4", "cut.avi"]


# ---- a system that gives way ----


def limit_files() -> None:
    resource.setrlimit(resource.RLIMIT_FSIZE, (40_000, 40_000))


@pytest.mark.parametrize("name", ["cut.avi", "cut.wav", "cut.mp3", "cut.bmp"])
def test_a_full_disk_is_told_and_leaves_nothing(
    name: str, native: Framewright, tmp_path: pathlib.Path
) -> None:
    end = None if name.endswith(".bmp") else 8.0
    line = cut_arguments(sources.PLAIN.path, tmp_path / name, 0.0, end)
    outcome = native.run(*line, "--quality", "best", prepare=limit_files)
    assert_refused(outcome, native)
    assert names_in(tmp_path) == []


def said_something(err: str) -> bool:
    return re.search(r"[1-9]\d* ?%", err) is not None


@pytest.mark.parametrize("name", ["cut.avi", "cut.mp3"])
def test_a_source_that_is_cut_short_meanwhile_ends_the_job_well(
    name: str, native: Framewright, tmp_path: pathlib.Path
) -> None:
    source, folder = tmp_path / "clip.mp4", tmp_path / "out"
    folder.mkdir()
    shutil.copy(looped(sources.LONG_PART, 10), source)
    line = cut_arguments(source, folder / name, 0.0, 600.0)
    with native.started(*line) as running:
        waiting.until(lambda: said_something(running.progress()), TOLD_IN_TIME, "progress")
        os.truncate(source, source.stat().st_size // 3)
        outcome = running.wait()
    assert_refused(outcome, native)
    assert names_in(folder) == []


def test_what_a_killed_job_left_goes_with_the_next_one(
    program: Framewright, tmp_path: pathlib.Path
) -> None:
    output, other = tmp_path / "cut.avi", tmp_path / "other file.avi"
    other.write_bytes(b"of somebody else")
    line = cut_arguments(looped(sources.LONG_PART, 10), output, 0.0, 600.0)
    with program.started(*line) as running:
        waiting.until(lambda: said_something(running.progress()), TOLD_IN_TIME, "progress")
        running.send(signal.SIGKILL)
        running.wait()
    left = set(names_in(tmp_path)) - {other.name}
    assert len(left) == 1 and output.name not in left
    assert_done(program.cut(sources.PLAIN.path, output, 1.0, 2.0), program)
    assert names_in(tmp_path) == ["cut.avi", "other file.avi"]
    assert other.read_bytes() == b"of somebody else"
