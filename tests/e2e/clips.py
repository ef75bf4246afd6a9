"""The clips that are played. timecode.avi: 640x360, 25 frames a second, ten seconds, a tone of
1000 Hz; the background has another colour each second, and eight squares along the top show the
number of the frame in binary, the lowest bit on the left.
The plain clips: two seconds of one colour and one tone each, so that both tell which one plays."""

from __future__ import annotations

import dataclasses
import pathlib
import subprocess

import numpy as np
from screen import Colour, Rect, colour_at
from stage import BUILD, ROOT

FOLDER = BUILD / "clips"
SIZE = (640, 360)
RATE = 25
SECONDS = 10.0
TONE_HERTZ = 1000.0
SECOND_COLOURS: list[Colour] = [
    (255, 0, 0),
    (0, 255, 0),
    (0, 0, 255),
    (255, 255, 0),
    (255, 0, 255),
    (0, 255, 255),
    (128, 0, 0),
    (0, 128, 0),
    (0, 0, 128),
    (128, 128, 128),
]
BITS = 8
WHITE = 128


@dataclasses.dataclass(frozen=True)
class PlainClip:
    name: str
    colour: Colour
    hertz: float


PLAIN_SECONDS = 2.0
PLAIN_CLIPS = (
    PlainClip("red.avi", (255, 0, 0), 500.0),
    PlainClip("green.avi", (0, 255, 0), 1200.0),
    PlainClip("blue.avi", (0, 0, 255), 2100.0),
)


def make() -> None:
    subprocess.run(["sh", ROOT / "tests" / "support" / "make_clips.sh", FOLDER], check=True)
    for clip in PLAIN_CLIPS:
        if not path(clip.name).exists():
            _make_plain(clip)


def _make_plain(clip: PlainClip) -> None:
    """Writes under another name first, so that a broken run leaves no clip."""
    part = path(f".part.{clip.name}")
    picture = f"color=0x{bytes(clip.colour).hex()}:size=320x240:rate=25:duration={PLAIN_SECONDS}"
    tone = f"sine=frequency={clip.hertz}:sample_rate=44100:duration={PLAIN_SECONDS}"
    sources = ["-f", "lavfi", "-i", picture, "-f", "lavfi", "-i", tone]
    kind = ["-c:v", "mjpeg", "-q:v", "3", "-pix_fmt", "yuvj420p", "-c:a", "pcm_s16le"]
    command = ["ffmpeg", "-nostdin", "-v", "error", "-y", *sources, *kind, part]
    subprocess.run(command, check=True)
    part.rename(path(clip.name))


def path(name: str = "timecode.avi") -> pathlib.Path:
    return FOLDER / name


def picture_in(client: Rect) -> Rect:
    return client.fitted(*SIZE)


def background(pixels: np.ndarray, client: Rect) -> Colour:
    return colour_at(pixels, picture_in(client).point(0.1, 0.85))


def frame_number(pixels: np.ndarray, client: Rect) -> int:
    picture = picture_in(client)
    number = 0
    for bit in range(BITS):
        x, y = (bit * 80 + 40) / SIZE[0], 30 / SIZE[1]
        if sum(colour_at(pixels, picture.point(x, y), radius=1)) / 3 > WHITE:
            number |= 1 << bit
    return number
