"""What a skin should make of the remote control, worked out from the skin's files."""

from __future__ import annotations

import functools
import math
import pathlib

import numpy as np
from PIL import Image
from player import SKINS
from records import read_record
from screen import Colour, Rect

NAMES = ("Daylight", "Graphite", "Carnival")
COLOUR_RECORD = 128

# Of the colour file.
POSITION_LINE, VOLUME_LINE = 1, 2
TITLE_TEXT, TITLE_BACK = 3, 4
BUTTON_BACK, BUTTON_TEXT = 5, 6
TIME_TEXT, TIME_BACK = 7, 8
FIELD_TEXT, FIELD_BACK = 9, 10
LIST_BACK, LIST_TEXT = 11, 12

# In pixels at 100 %, as docs/skins.md has them.
FACE_SIZE = (560, 160)
STRETCHED_ROW = 120
POSITION_TRACK = Rect(166, 32, 262, 2)
VOLUME_TRACK = Rect(450, 8, 2, 43)


def scaled(number: float, percent: int) -> int:
    return math.floor(number * percent / 100 + 0.5)


def scaled_rect(rect: Rect, percent: int) -> Rect:
    """Edges are rounded, not sizes."""
    left, top = scaled(rect.left, percent), scaled(rect.top, percent)
    return Rect(
        left, top, scaled(rect.right, percent) - left, scaled(rect.bottom, percent) - top
    )


def shrunk(pixels: np.ndarray, lines: int) -> np.ndarray:
    """Fewer lines, each the mean of those that it covers, the two at its edges in part."""
    before = np.concatenate([np.zeros_like(pixels[:1]), np.cumsum(pixels, axis=0)])
    edges = np.linspace(0, len(pixels), lines + 1)
    whole = np.minimum(edges.astype(int), len(pixels) - 1)
    part = (edges - whole).reshape(-1, *[1] * (pixels.ndim - 1))
    return np.diff(before[whole] + part * pixels[whole], axis=0) * lines / len(pixels)


class Skin:
    def __init__(self, name: str, folder: pathlib.Path = SKINS) -> None:
        self.folder = folder / name

    def colour(self, record: int) -> Colour:
        number = int(read_record(self.folder / "nqp_colors.cfg", record, COLOUR_RECORD))
        return number & 255, number >> 8 & 255, number >> 16 & 255

    def picture(self, file: str, width: int, height: int) -> np.ndarray:
        """Four channels, the colours multiplied by the alpha."""
        pixels = np.asarray(Image.open(self.folder / file).convert("RGBA")).astype(float)
        pixels[..., :3] *= pixels[..., 3:] / 255
        return shrunk(shrunk(pixels, height).swapaxes(0, 1), width).swapaxes(0, 1)

    @functools.cache
    def face(self, width: int, height: int, percent: int) -> np.ndarray:
        """The background of a remote that is as narrow as it can be, with the two tracks on it."""
        size = (scaled(FACE_SIZE[0], percent), scaled(FACE_SIZE[1], percent))
        assert width == size[0]
        face = self.picture("backgrnd.bmp", *size)[..., :3]
        row, more = scaled(STRETCHED_ROW, percent), max(0, height - size[1])
        face = np.concatenate([face[: row + 1], *[face[row : row + 1]] * more, face[row + 1 :]])
        for track, record in ((POSITION_TRACK, POSITION_LINE), (VOLUME_TRACK, VOLUME_LINE)):
            place = scaled_rect(track, percent)
            face[place.top : place.bottom, place.left : place.right] = self.colour(record)
        return face[:height]

    def over(self, under: np.ndarray, file: str, width: int, height: int) -> np.ndarray:
        """A picture of this size as it looks on a part of the face, as much as that covers."""
        picture = self.picture(file, width, height)[: len(under), : len(under[0])]
        return picture[..., :3] + under * (1 - picture[..., 3:] / 255)
