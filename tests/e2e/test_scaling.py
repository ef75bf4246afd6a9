"""The windows on a screen with more dots per inch; pictures of them are kept for a person."""

from __future__ import annotations

from collections.abc import Callable

import numpy as np
import pytest
from player import MENU, PLAY_RATE, VIDEO, Player
from screen import Rect, Screen
from stage import BUILD

PICTURES = BUILD / "screens"
PLAIN_VIDEO = (344, 257)
COLOURS_OF_TEXT = 8  # smooth letters on paper have at least so many shades


def shades(screen: Screen, rect: Rect) -> int:
    part = screen.pixels()[rect.top : rect.bottom, rect.left : rect.right].reshape(-1, 3)
    return len(np.unique(part, axis=0))


@pytest.mark.parametrize("percent", [100, 150, 200])
def test_windows_grow_with_the_scaling(
    scaled_player: Callable[[int], Player], screen: Screen, percent: int
) -> None:
    player = scaled_player(96 * percent // 100)
    player.open()
    video = player.rect(VIDEO)
    for size, plain in zip((video.width, video.height), PLAIN_VIDEO):
        assert abs(size - plain * percent / 100) <= 1

    player.open_menu(player.client().point(0.1, 0.1))
    menu = player.rect(MENU)
    screen.save(PICTURES / f"menu-{percent}.png", menu)
    assert menu.width == pytest.approx(180 * percent / 100, abs=2)
    assert shades(screen, menu) >= COLOURS_OF_TEXT
    player.pointer.key("Escape")
    player.wait(MENU, "gone")

    player.choose("Playrate")
    player.wait(PLAY_RATE, "visible")
    dialog = player.rect(PLAY_RATE)
    screen.save(PICTURES / f"playrate-{percent}.png", dialog)
    assert dialog.width >= 5400 / 15 * percent / 100
    assert dialog.right <= 1280 and dialog.bottom <= 1024
    assert shades(screen, dialog) >= COLOURS_OF_TEXT
    player.ctl.ask("close", f"{PLAY_RATE}@{player.process}")
    player.wait(PLAY_RATE, "gone")
