"""The clips that are played. timecode.avi: 640x360, 25 frames a second, ten seconds, a tone of
1000 Hz; the background has another colour each second, and eight squares along the top show the
number of the frame in binary, the lowest bit on the left."""

from __future__ import annotations

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


def make() -> None:
    subprocess.run(["sh", ROOT / "tests" / "support" / "make_clips.sh", FOLDER], check=True)


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
