"""Pictures of the whole screen, as a person would see it."""

from __future__ import annotations

import dataclasses
import io
import pathlib
import subprocess

import numpy as np
from PIL import Image

Colour = tuple[int, int, int]

# What stage.sh paints the empty screen with.
EMPTY_SCREEN: Colour = (47, 79, 111)


@dataclasses.dataclass(frozen=True)
class Rect:
    left: int
    top: int
    width: int
    height: int

    @property
    def right(self) -> int:
        return self.left + self.width

    @property
    def bottom(self) -> int:
        return self.top + self.height

    @property
    def centre(self) -> tuple[int, int]:
        return self.left + self.width // 2, self.top + self.height // 2

    def fitted(self, width: int, height: int) -> Rect:
        """Where a picture of this size goes when it keeps its proportions."""
        scale = min(self.width / width, self.height / height)
        w, h = round(width * scale), round(height * scale)
        return Rect(self.left + (self.width - w) // 2, self.top + (self.height - h) // 2, w, h)

    def point(self, x: float, y: float) -> tuple[int, int]:
        """A point inside, as fractions of width and height."""
        return self.left + round(self.width * x), self.top + round(self.height * y)


class Screen:
    def __init__(self, env: dict[str, str]) -> None:
        self._env = env

    def image(self) -> Image.Image:
        done = subprocess.run(
            ["import", "-silent", "-window", "root", "bmp3:-"],
            env=self._env,
            check=True,
            capture_output=True,
            timeout=20,
        )
        return Image.open(io.BytesIO(done.stdout)).convert("RGB")

    def pixels(self) -> np.ndarray:
        return np.asarray(self.image())

    def save(self, path: pathlib.Path, part: Rect | None = None) -> None:
        path.parent.mkdir(parents=True, exist_ok=True)
        image = self.image()
        if part is not None:
            image = image.crop((part.left, part.top, part.right, part.bottom))
        image.save(path)


def colour_at(pixels: np.ndarray, point: tuple[int, int], radius: int = 2) -> Colour:
    """The mean colour around a point."""
    x, y = point
    part = pixels[y - radius : y + radius + 1, x - radius : x + radius + 1].reshape(-1, 3)
    red, green, blue = part.mean(axis=0).round().astype(int)
    return int(red), int(green), int(blue)


def is_near(a: Colour, b: Colour, tolerance: int = 16) -> bool:
    return all(abs(one - other) <= tolerance for one, other in zip(a, b))
