"""A real mouse and a real keyboard on the stage's display."""

from __future__ import annotations

import contextlib
import subprocess
from collections.abc import Iterator

from screen import Rect
from waiting import until

LEFT = 1
RIGHT = 3
Point = tuple[int, int]


class Pointer:
    def __init__(self, env: dict[str, str]) -> None:
        self._env = env

    def _run(self, *words: object) -> None:
        subprocess.run(
            ["xdotool", *map(str, words)], env=self._env, check=True, capture_output=True, timeout=20
        )

    def move(self, point: Point) -> None:
        self._run("mousemove", *point)

    def click(self, point: Point, button: int = LEFT) -> None:
        """As a finger does it: a press of no length at all ends before a window manager has seen it."""
        self.move(point)
        self._run("mousedown", button, "sleep", 0.06, "mouseup", button)

    def double_click(self, point: Point) -> None:
        self.move(point)
        self._run("click", "--repeat", 2, "--delay", 80, LEFT)

    def drag(self, start: Point, end: Point, steps: int = 8) -> None:
        """As a hand does it: many small moves while the button is down."""
        with self.held(start):
            self.glide(start, end, steps)

    @contextlib.contextmanager
    def held(self, point: Point) -> Iterator[None]:
        """The button goes down at this point and stays down until the end of the block."""
        self.move(point)
        self._run("mousedown", LEFT)
        try:
            yield
        finally:
            self._run("mouseup", LEFT)

    def glide(self, start: Point, end: Point, steps: int = 8) -> None:
        for step in range(1, steps + 1):
            x = start[0] + (end[0] - start[0]) * step // steps
            y = start[1] + (end[1] - start[1]) * step // steps
            self._run("mousemove", x, y, "sleep", 0.02)

    def focused_title(self) -> str:
        """The title of the window that the display sends keys to."""
        command = ["xdotool", "getwindowfocus", "getwindowname"]
        found = subprocess.run(
            command, env=self._env, check=False, capture_output=True, text=True, timeout=20
        )
        return found.stdout.strip()

    def wait_for_keys_at(self, place: Rect) -> None:
        """Until the display sends keys to the window at this place."""

        def is_there() -> bool:
            command = ["xdotool", "getwindowfocus", "getwindowgeometry", "--shell"]
            found = subprocess.run(
                command, env=self._env, check=False, capture_output=True, text=True, timeout=20
            )
            values = dict(line.split("=", 1) for line in found.stdout.splitlines() if "=" in line)
            return (values.get("X"), values.get("Y")) == (str(place.left), str(place.top))

        until(is_there, 5, f"keys go to the window at {place}")

    def key(self, *keys: str) -> None:
        self._run("key", "--delay", 40, *keys)

    def type(self, text: str) -> None:
        self._run("type", "--delay", 30, text)
