#!/usr/bin/env python3
"""Measures how fast Framewright is beside the ffmpeg program of this machine at the same work.

    bench.py [ROUNDS]     3 by default

Both do each job in turn. The median counts; what a fragment of 0.2 s takes, which is starting,
opening and ending, is taken off. Then the most memory, for a clip of a minute and of an hour.
"""

from __future__ import annotations

import dataclasses
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time
from collections.abc import Callable

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "e2e")]

import sources  # noqa: E402
from framewright import DONE, Framewright  # noqa: E402
from marked_clip import FOLDER, looped  # noqa: E402

DEADLINE = 600.0
START_SECONDS = 0.2
MEMORY_GROWTH = 24  # megabytes at most, from a minute to an hour: the index of the clip


@dataclasses.dataclass(frozen=True)
class Task:
    name: str
    source: pathlib.Path
    seconds: float
    suffix: str
    ours: tuple[str, ...]
    theirs: tuple[str, ...]
    begin: float = 0.0

    def for_starting(self) -> Task:
        return dataclasses.replace(self, seconds=START_SECONDS)


def make_once(name: str, *arguments: str) -> pathlib.Path:
    path = FOLDER / name
    if not path.exists():
        FOLDER.mkdir(parents=True, exist_ok=True)
        part = path.with_name(f".part-{name}")
        command = ["ffmpeg", "-nostdin", "-v", "error", "-y", *arguments, str(part)]
        subprocess.run(command, check=True)
        part.rename(path)
    return path


def moving_picture() -> pathlib.Path:
    """A minute of what compresses about as badly as a film."""
    picture = "testsrc2=size=1280x720:rate=25:duration=60,noise=alls=12:allf=t"
    tone = "anoisesrc=color=pink:sample_rate=48000:duration=60:amplitude=0.3"
    inputs = ["-f", "lavfi", "-i", picture, "-f", "lavfi", "-i", tone, "-ac", "2"]
    kind = ["-c:v", "libx264", "-preset", "veryfast", "-b:v", "4M", "-pix_fmt", "yuv420p"]
    return make_once("bench.mp4", *inputs, *kind, "-c:a", "aac", "-b:a", "160k")


def long_sound() -> pathlib.Path:
    tone = "anoisesrc=color=pink:sample_rate=44100:duration=600:amplitude=0.3"
    kind = ["-ac", "2", "-c:a", "aac", "-b:a", "160k"]
    return make_once("bench.m4a", "-f", "lavfi", "-i", tone, *kind)


def tasks() -> list[Task]:
    film, sound = moving_picture(), long_sound()
    avi = looped(sources.COPYABLE_PART, 10)
    pcm = ("-c:a", "pcm_s16le")
    return [
        Task("video 720p, 60 s", film, 60, ".avi", (), ("-c:v", "msmpeg4", "-q:v", "4", *pcm)),
        Task("sound to MP3, 600 s", sound, 600, ".mp3", (), ("-vn", "-b:a", "192k")),
        Task("sound to PCM, 600 s", sound, 600, ".wav", (), ("-vn", *pcm)),
        Task("copy, 300 s", avi, 300, ".avi", ("--format", "copy"), ("-c", "copy"), 120.0),
    ]


def seconds_of_ours(program: Framewright, task: Task, output: pathlib.Path) -> float:
    options = (*task.ours, "--overwrite", "--quiet")
    end = task.begin + task.seconds
    # Wine ends its own processes soon after the last program; starting them anew is not our time.
    program.run("--version")
    outcome = program.cut(task.source, output, task.begin, end, *options, deadline=DEADLINE)
    if outcome.code != DONE:
        raise RuntimeError(f"{task.name}: {outcome.err}")
    return outcome.seconds


def seconds_of_theirs(task: Task, output: pathlib.Path) -> float:
    cut = ["-ss", str(task.begin), "-t", str(task.seconds), "-i", str(task.source), *task.theirs]
    begin = time.monotonic()
    command = ["ffmpeg", "-nostdin", "-v", "error", "-y", *cut, str(output)]
    subprocess.run(command, check=True, timeout=DEADLINE)
    return time.monotonic() - begin


@dataclasses.dataclass(frozen=True)
class Speeds:
    ours: float
    theirs: float


def measured(program: Framewright, task: Task, rounds: int, folder: pathlib.Path) -> Speeds:
    """Medians of rounds in which both do the same, one after the other."""
    output = folder / f"out{task.suffix}"
    turns: list[Callable[[], float]] = [
        lambda: seconds_of_ours(program, task, output),
        lambda: seconds_of_theirs(task, output),
    ]
    times = [[turn() for turn in turns] for _ in range(rounds)]
    ours, theirs = (statistics.median(column) for column in zip(*times))
    return Speeds(ours, theirs)


def print_speeds(program: Framewright, rounds: int, folder: pathlib.Path) -> None:
    print(f"{'seconds, without the start':28}{'Framewright':>13}{'ffmpeg':>9}{'ratio':>8}")
    for task in tasks():
        start = measured(program, task.for_starting(), rounds, folder)
        whole = measured(program, task, rounds, folder)
        ours, theirs = whole.ours - start.ours, whole.theirs - start.theirs
        ratio = f"{ours / theirs:8.2f}" if theirs > 0.01 else "       -"
        print(f"{task.name:28}{ours:13.2f}{theirs:9.2f}{ratio}")
        print(f"{'  start':28}{start.ours:13.2f}{start.theirs:9.2f}", flush=True)


def peak_megabytes(program: Framewright, source: pathlib.Path, output: pathlib.Path) -> float:
    outcome = program.cut(
        source, output, 0.0, 4000.0, "--overwrite", "--quiet", deadline=DEADLINE
    )
    if outcome.code != DONE:
        raise RuntimeError(outcome.err)
    return outcome.peak_kilobytes / 1024


def print_memory(program: Framewright, folder: pathlib.Path) -> bool:
    """Whether it stays the same, however long the clip is."""
    minute, hour = looped(sources.LONG_PART, 1), looped(sources.LONG_PART, 60)
    flat = True
    print(f"{'megabytes at most':28}{'1 min':>13}{'60 min':>9}{'ratio':>8}")
    for suffix in (".avi", ".mp3", ".wav"):
        output = folder / f"long{suffix}"
        short, long = (peak_megabytes(program, clip, output) for clip in (minute, hour))
        flat = flat and long < short + MEMORY_GROWTH
        print(f"{'  to ' + suffix:28}{short:13.0f}{long:9.0f}{long / short:8.2f}", flush=True)
    return flat


def main(arguments: list[str]) -> int:
    rounds = int(arguments[0]) if arguments else 3
    program = Framewright(os.environ.get("NQP_FRAMEWRIGHT", "wine") == "wine")
    try:
        with tempfile.TemporaryDirectory(dir=FOLDER.parent) as folder:
            print_speeds(program, rounds, pathlib.Path(folder))
            flat = print_memory(program, pathlib.Path(folder))
    finally:
        program.close()
    print("memory stays flat" if flat else "memory grows with the clip")
    return 0 if flat else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
