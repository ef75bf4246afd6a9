"""A notification area on the stage's display, as a desktop has one."""

from __future__ import annotations

import pathlib
import subprocess

import numpy as np
from screen import Colour, Rect, Screen
from waiting import until

# In the lower right corner, where no test puts a window of the player.
AREA = Rect(1200, 984, 80, 40)
BARE: Colour = (144, 32, 96)
START_SECONDS = 10.0

SETTINGS = f"""
panel_items = S
panel_size = {AREA.width} {AREA.height}
panel_position = bottom right horizontal
panel_layer = top
panel_shrink = 0
strut_policy = none
wm_menu = 0
systray_padding = 8 8 8
systray_icon_size = 24
rounded = 0
border_width = 0
background_color = #{bytes(BARE).hex()} 100
panel_background_id = 1
"""


class Tray:
    def __init__(self, env: dict[str, str], folder: pathlib.Path, screen: Screen) -> None:
        self._screen = screen
        settings = folder / "tint2rc"
        settings.write_text(SETTINGS)
        with (folder / "tint2.log").open("wb") as log:
            self._process = subprocess.Popen(
                ["tint2", "-c", settings], env=env, stdout=log, stderr=log
            )
        until(self._is_on_the_screen, START_SECONDS, "the tray is on the screen")

    def _pixels(self) -> np.ndarray:
        return self._screen.pixels()[AREA.top : AREA.bottom, AREA.left : AREA.right]

    def _is_on_the_screen(self) -> bool:
        return bool((self._pixels() == BARE).any(axis=2).any())

    def icon(self) -> Rect | None:
        """Where something is seen in the tray."""
        rows, columns = np.nonzero((self._pixels() != BARE).any(axis=2))
        if not len(rows):
            return None
        left, top = int(columns.min()), int(rows.min())
        return Rect(
            AREA.left + left,
            AREA.top + top,
            int(columns.max()) - left + 1,
            int(rows.max()) - top + 1,
        )

    def close(self) -> None:
        self._process.terminate()
        self._process.wait(timeout=10)
