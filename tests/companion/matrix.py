#!/usr/bin/env python3
"""Cuts out of a clip of each container with each kind of job, and prints a table of what is exact.

    matrix.py [native|wine] [NAME...]     only the sources whose name holds one of these texts
"""

from __future__ import annotations

import concurrent.futures
import dataclasses
import pathlib
import shutil
import sys
from collections.abc import Callable

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "e2e")]

import evidence  # noqa: E402
import overlay  # noqa: E402
import sources  # noqa: E402
from framewright import DONE, FAILED, Argument, Framewright, Outcome  # noqa: E402
from marked_clip import ROOT, Clip  # noqa: E402

KEPT = ROOT / "build" / "companion" / "matrix"
AT_ONCE = 2
PICTURE_SIZE = (38, 30)
PICTURE_PLACE = (900, 950)  # per mille


@dataclasses.dataclass(frozen=True)
class Fragment:
    name: str
    begin: float
    end: float


# No bound is near a frame's edge: how a container rounds its times is not what is looked at.
FRAGMENTS = (
    Fragment("start", 0.0, 1.49),
    Fragment("middle", 3.386, 5.75),
    Fragment("end", 6.75, 30.0),
)

Judge = Callable[[pathlib.Path, Clip, Fragment], list[str]]


@dataclasses.dataclass(frozen=True)
class Job:
    name: str
    suffix: str
    judge: Judge
    needs: str  # what a source must hold: "picture" or "sound"
    options: tuple[Argument, ...] = ()


def video_is_right(output: pathlib.Path, clip: Clip, fragment: Fragment) -> list[str]:
    return evidence.video_differences(output, clip, fragment.begin, fragment.end)


def covered_video_is_right(output: pathlib.Path, clip: Clip, fragment: Fragment) -> list[str]:
    found = video_is_right(output, clip, fragment)
    if found:
        return found
    assert clip.picture is not None
    size = clip.picture.size
    frames = overlay.limited_lumas(output, size)
    at = overlay.place(PICTURE_PLACE, size, PICTURE_SIZE)
    return overlay.misplacements(frames, overlay.opaque(PICTURE_SIZE), at)


def sound_is_right(output: pathlib.Path, clip: Clip, fragment: Fragment) -> list[str]:
    return evidence.sound_differences(output, clip, fragment.begin, fragment.end)


def still_is_right(output: pathlib.Path, clip: Clip, fragment: Fragment) -> list[str]:
    return evidence.still_differences(output, clip, fragment.begin)


def jobs(picture: pathlib.Path) -> tuple[Job, ...]:
    place = [str(part) for part in PICTURE_PLACE]
    lay = ("--picture", picture, "--picture-x", place[0], "--picture-y", place[1])
    return (
        Job("video", ".avi", video_is_right, "picture"),
        Job("with picture", ".avi", covered_video_is_right, "picture", lay),
        Job("sound AVI", ".avi", sound_is_right, "sound", ("--sound",)),
        Job("sound WAV", ".wav", sound_is_right, "sound"),
        Job("MP3", ".mp3", sound_is_right, "sound"),
        Job("still", ".bmp", still_is_right, "picture"),
    )


def refusal_differences(outcome: Outcome, output: pathlib.Path) -> list[str]:
    """Of a job for something that the source has not."""
    if outcome.code != FAILED:
        return [f"ended with {outcome.code}"]
    if not outcome.sentence:
        return ["failed without a word"]
    return ["left a file"] if output.exists() else []


def failure_of(outcome: Outcome, wine: bool) -> list[str]:
    crash = outcome.crash(wine)
    if crash:
        return [crash]
    return [] if outcome.code == DONE else [f"failed: {outcome.sentence}"]


@dataclasses.dataclass(frozen=True)
class Cell:
    clip: Clip
    job: Job

    @property
    def possible(self) -> bool:
        return bool(getattr(self.clip, self.job.needs))

    def fill(self, program: Framewright) -> str:
        """Runs the job for each fragment; "exact", "no ..." or what differs."""
        places: dict[str, list[str]] = {}
        for fragment in FRAGMENTS if self.possible else FRAGMENTS[:1]:
            found = self._differences(program, fragment)
            if found:
                places.setdefault(", ".join(found), []).append(fragment.name)
        if places:
            return "; ".join(f"{text} ({', '.join(at)})" for text, at in places.items())
        return "exact" if self.possible else f"no {self.job.needs}"

    def _differences(self, program: Framewright, fragment: Fragment) -> list[str]:
        name = f"{self.clip.name}-{self.job.name}-{fragment.name}{self.job.suffix}"
        output = KEPT / name.replace(" ", "-")
        end = None if self.job.suffix == ".bmp" else fragment.end
        try:
            outcome = program.cut(
                self.clip.path, output, fragment.begin, end, *self.job.options
            )
        except AssertionError as error:
            return [str(error)]
        if not self.possible:
            return refusal_differences(outcome, output)
        found = failure_of(outcome, program.wine)
        found = found or self.job.judge(output, self.clip, fragment)
        if not found:
            output.unlink()
        return found


def is_good(text: str) -> bool:
    return text == "exact" or text.startswith("no ")


def print_table(names: list[str], columns: list[str], cells: list[list[str]]) -> None:
    """What differs is told in full below, by number."""
    notes: list[str] = []
    left = max(map(len, names)) + 2
    width = max(map(len, columns)) + 2
    print(" " * left + "".join(column.ljust(width) for column in columns))
    for name, row in zip(names, cells):
        line = name.ljust(left)
        for column, text in zip(columns, row):
            if is_good(text):
                line += text.ljust(width)
            else:
                notes.append(f"({len(notes) + 1}) {name}, {column}: {text}")
                line += f"({len(notes)})".ljust(width)
        print(line.rstrip())
    print(*notes, sep="\n")


def chosen_clips(texts: list[str]) -> list[Clip]:
    every = [*sources.PICTURE_CLIPS, *sources.SOUND_CLIPS]
    return [clip for clip in every if not texts or any(text in clip.name for text in texts)]


def prepared_folder() -> pathlib.Path:
    """With nothing but the picture in it."""
    shutil.rmtree(KEPT, ignore_errors=True)
    KEPT.mkdir(parents=True)
    return overlay.write_bmp(KEPT / "picture.bmp", overlay.opaque(PICTURE_SIZE), 24)


def main(arguments: list[str]) -> int:
    wine = "native" not in arguments
    clips = chosen_clips([text for text in arguments if text not in ("native", "wine")])
    every_job = jobs(prepared_folder())
    program = Framewright(wine)
    try:
        with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as pool:
            cells = [Cell(clip, job) for clip in clips for job in every_job]
            list(pool.map(evidence.source_of, clips))
            texts = list(pool.map(lambda cell: cell.fill(program), cells))
    finally:
        program.close()
    width = len(every_job)
    rows = [texts[start : start + width] for start in range(0, len(texts), width)]
    print_table([clip.name for clip in clips], [job.name for job in every_job], rows)
    exact, good = texts.count("exact"), sum(map(is_good, texts))
    print(f"{good - exact} jobs asked for what the source has not, and were refused")
    print(f"{exact} exact, {len(texts) - good} differ")
    return 0 if good == len(texts) and exact else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
