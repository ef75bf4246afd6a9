"""A notification area on the stage's display, as a desktop has one."""

from __future__ import annotations

import pathlib
import subprocess

import numpy as np
from screen import Colour, Rect, Screen
from waiting import until
from winctl import Winctl

# In the lower right corner, where no test puts a window of the player.
AREA = Rect(1200, 984, 80, 40)
BARE: Colour = (144, 32, 96)
START_SECONDS = 10.0

# What Wine calls the windows of the tray and of the icon in it.
TRAY_WINDOW, ICON_WINDOW = "__wine_x11_foreign_window", "__winex11_tray_icon"

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

    def wait_for_icon(self, ctl: Winctl) -> Rect:
        """Waits until an icon is there and takes clicks."""
        until(self.icon, 5, "an icon is in the tray")
        until(lambda: ICON_WINDOW in _classes(ctl), 5, "Wine knows that its icon is in the tray")
        # Now and then Wine goes on to believe that it is in the corner of the screen, and loses
        # the clicks on it.
        ctl.ask("place", TRAY_WINDOW, ICON_WINDOW, 0, 0)
        place = Rect(*map(int, ctl.ask("rect", TRAY_WINDOW, ICON_WINDOW)[0]))
        seen = until(self.icon, 5, "the icon is in the tray")
        assert place.left <= seen.left and seen.right <= place.right
        return seen

    def wait_for_no_icon(self) -> None:
        until(lambda: self.icon() is None, 5, "the tray is empty")

    def close(self) -> None:
        self._process.terminate()
        self._process.wait(timeout=10)


def _classes(ctl: Winctl) -> list[str]:
    if ctl.ask("is", TRAY_WINDOW, "exists") == [["0"]]:
        return []
    return [row[3] for row in ctl.ask("tree", TRAY_WINDOW)]
