"""Cancelled, killed and fed with damaged clips: nothing is left, nothing hangs, nothing crashes.

NQP_HARDSHIP=full runs ten moments and two hundred damaged clips instead of a few.
"""

from __future__ import annotations

import concurrent.futures
import dataclasses
import os
import pathlib
import random
import signal
import time
from collections.abc import Callable

import evidence
import overlay
import pytest
import sources
import waiting
from framewright import (
    CANCELLED,
    DONE,
    FAILED,
    Argument,
    Framewright,
    Running,
    cut_arguments,
)
from marked_clip import looped

FULL = os.environ.get("NQP_HARDSHIP") == "full"
MOMENTS = 10 if FULL else 2
DAMAGED_CLIPS = 200 if FULL else 40
SEED = 20240229
LATENCY_SECONDS = 0.5
DAMAGED_DEADLINE = 20.0
AT_ONCE = 2
LONG_SECONDS = 1800.0


@dataclasses.dataclass(frozen=True)
class Mode:
    name: str
    suffix: str
    options: tuple[Argument, ...] = ()
    with_picture: bool = False

    def arguments(
        self, source: pathlib.Path, output: pathlib.Path, begin: float, end: float
    ) -> tuple[Argument, ...]:
        options = self.options
        if self.with_picture:
            options = ("--picture", _picture(), "--picture-x", "500", *options)
        to = None if self.suffix == ".bmp" else end
        return cut_arguments(source, output, begin, to, *options)


def _picture() -> pathlib.Path:
    path = sources.PLAIN.path.with_name("hardship.bmp")
    if not path.exists():
        part = path.with_suffix(f".{os.getpid()}")
        overlay.write_bmp(part, overlay.opaque((38, 30)), 24).rename(path)
    return path


LONG_MODES = (
    Mode("video", ".avi"),
    Mode("with picture", ".avi", with_picture=True),
    Mode("copy", ".avi", ("--format", "copy")),
    Mode("sound", ".wav"),
    Mode("mp3", ".mp3"),
)
MODES = (*LONG_MODES, Mode("still", ".bmp"))


def moments(mode: Mode) -> list[float]:
    """Seconds after the start, which itself takes a little with sanitizers."""
    chance = random.Random(f"{SEED}{mode.name}")
    return [chance.uniform(0.25, 1.4) for _ in range(MOMENTS)]


def name_of(mode: Mode) -> str:
    return mode.name


def names_in(folder: pathlib.Path) -> list[str]:
    return sorted(path.name for path in folder.iterdir())


def interrupted_at(
    program: Framewright,
    line: tuple[Argument, ...],
    moment: float,
    act: Callable[[Running], None],
) -> bool:
    """Whether the job was still at work when the moment had come."""
    with program.started(*line) as running:
        due = time.monotonic() + moment
        passed = waiting.until(
            lambda: running.ended() or time.monotonic() >= due, moment + 5, "the moment"
        )
        assert passed
        if running.ended():
            running.wait()
            return False
        act(running)
        return True


@pytest.mark.parametrize("mode", LONG_MODES, ids=name_of)
def test_a_cancelled_job_ends_at_once_and_leaves_nothing(
    mode: Mode, native: Framewright, tmp_path: pathlib.Path
) -> None:
    source = looped(sources.COPYABLE_PART, 30)
    line = mode.arguments(source, tmp_path / f"cut{mode.suffix}", 0.4, LONG_SECONDS)

    def cancel(running: Running) -> None:
        begin = running.send(signal.SIGINT)
        outcome = running.wait()
        latency = time.monotonic() - begin
        assert outcome.crash(native.wine) is None, outcome.err
        assert outcome.code == CANCELLED, outcome.err
        assert latency < LATENCY_SECONDS
        assert names_in(tmp_path) == []

    at_work = [interrupted_at(native, line, moment, cancel) for moment in moments(mode)]
    # A copy may be quicker than the moment; all others take long.
    assert all(at_work) or mode.name == "copy"


@pytest.mark.parametrize("mode", LONG_MODES, ids=name_of)
def test_a_killed_job_leaves_what_the_next_one_removes(
    mode: Mode, native: Framewright, tmp_path: pathlib.Path
) -> None:
    source = looped(sources.COPYABLE_PART, 30)
    output = tmp_path / f"cut{mode.suffix}"
    line = mode.arguments(source, output, 0.4, LONG_SECONDS)

    def kill(running: Running) -> None:
        running.send(signal.SIGKILL)
        running.wait()
        left = names_in(tmp_path)
        assert output.name not in left and len(left) <= 1

    at_work = []
    for moment in moments(mode):
        at_work.append(interrupted_at(native, line, moment, kill))
        output.unlink(missing_ok=True)
        short = mode.arguments(sources.COPYABLE_PART.path, output, 1.0, 2.0)
        outcome = native.run(*short, "--overwrite")
        assert outcome.code == DONE, outcome.err
        assert names_in(tmp_path) == [output.name]
        output.unlink()
    assert all(at_work) or mode.name == "copy"


# ---- damaged clips ----

DAMAGED_KINDS = (
    sources.named("mpeg4-mp3.avi"),
    sources.PLAIN,
    sources.named("h264-pcm.mov"),
    sources.named("h264-vorbis.mkv"),
    sources.named("vp9-opus.webm"),
    sources.named("wmv2-wmav2.wmv"),
    sources.named("mpeg2-mp2.mpg"),
    sources.named("h264-aac.ts"),
    sources.named("h264-aac.flv"),
    sources.named("hevc-opus.mkv"),
)


def damaged(data: bytes, chance: random.Random) -> bytes:
    """Cut off somewhere, or with some bytes changed: anywhere, or in the head where the container
    says what it holds."""
    kind = chance.choice(("short", "anywhere", "head"))
    if kind == "short":
        return data[: chance.randrange(1, len(data))]
    reach = len(data) if kind == "anywhere" else min(len(data), 2000)
    changed = bytearray(data)
    for _ in range(chance.choice((1, 5, 50, 500))):
        changed[chance.randrange(reach)] = chance.randrange(256)
    return bytes(changed)


def trouble_with(program: Framewright, mode: Mode, source: pathlib.Path, end: float) -> str | None:
    """What is wrong in how the program takes this clip, in words."""
    folder = source.parent / f"{source.name} {mode.name}"
    folder.mkdir()
    output = folder / f"cut{mode.suffix}"
    try:
        outcome = program.run(
            *mode.arguments(source, output, 2.5, end), deadline=DAMAGED_DEADLINE
        )
    except AssertionError as error:
        return str(error)
    crash = outcome.crash(program.wine)
    if crash:
        return crash
    if outcome.code == DONE:
        return None if names_in(folder) == [output.name] and _opens(output) else "a bad output"
    if outcome.code != FAILED or not outcome.sentence:
        return f"ended with {outcome.code} and said {outcome.err!r}"
    return f"failed and left {names_in(folder)}" if names_in(folder) else None


def _opens(output: pathlib.Path) -> bool:
    try:
        return bool(evidence.codecs(output))
    except AssertionError:
        return False


def test_damaged_clips_are_cut_or_refused(program: Framewright, tmp_path: pathlib.Path) -> None:
    chance = random.Random(SEED)
    jobs: list[tuple[Mode, pathlib.Path, float]] = []
    for number in range(DAMAGED_CLIPS):
        clip = DAMAGED_KINDS[number % len(DAMAGED_KINDS)]
        source = tmp_path / f"{number}-{clip.name}"
        source.write_bytes(damaged(clip.path.read_bytes(), chance))
        chosen = MODES if FULL else [MODES[number % len(MODES)], MODES[(number + 3) % len(MODES)]]
        jobs += [(mode, source, 4.0) for mode in chosen]

    def told(job: tuple[Mode, pathlib.Path, float]) -> str | None:
        trouble = trouble_with(program, *job)
        return f"{job[1].name} {job[0].name}: {trouble}" if trouble else None

    with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as pool:
        assert [text for text in pool.map(told, jobs) if text] == []
