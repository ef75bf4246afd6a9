"""The icon in the notification area, in a tray as a desktop has one."""

from __future__ import annotations

from collections.abc import Iterator

import numpy as np
import pytest
from conftest import Desk
from player import REMOTE, VIDEO, Player
from pointer import LEFT, RIGHT, Point, Pointer
from remote import HIDE_ALL_BUTTON, HIDE_BUTTON, Remote
from screen import Rect, Screen
from tray import Tray
from waiting import until

# The system's pop-up menu.
POPUP_MENU = "#32768"
ENTRIES = ("Show", "Hide", "Close")
BOTH = (VIDEO, REMOTE)
SMALLEST_ICON = 14  # of the 16 pixels of a small icon, some may be blank
COLOURS_OF_A_PICTURE = 8


@pytest.fixture(scope="module")
def tray(desk: Desk) -> Iterator[Tray]:
    desk.finish_all()
    made = Tray(desk.stage.env, desk.stage.folder, desk.screen)
    try:
        yield made
        desk.finish_all()
    finally:
        made.close()


def wait_for_both(player: Player, state: str) -> None:
    for window in BOTH:
        player.wait(window, state)


def are_both(player: Player, state: str) -> bool:
    return all(player.is_in(window, state) for window in BOTH)


def click_icon(player: Player, tray: Tray, button: int = LEFT) -> None:
    player.pointer.click(tray.wait_for_icon(player.ctl).centre, button)


def open_tray_menu(player: Player, tray: Tray) -> Rect:
    click_icon(player, tray, RIGHT)
    player.wait(POPUP_MENU, "visible")
    return player.rect(POPUP_MENU)


def entry_in(menu: Rect, entry: str) -> Point:
    return menu.point(0.5, (ENTRIES.index(entry) + 0.5) / len(ENTRIES))


def start_hidden(player: Player, tray: Tray) -> None:
    player.start("/START")
    tray.wait_for_icon(player.ctl)
    wait_for_both(player, "hidden")


def has_icon(player: Player) -> bool:
    return player.ctl.ask("icon", f"{REMOTE}@{player.process}") == [["1"]]


def test_icon_comes_with_the_program_and_goes_with_it(
    player: Player, tray: Tray, screen: Screen
) -> None:
    assert tray.icon() is None
    player.start_and_show()
    icon = tray.wait_for_icon(player.ctl)
    assert min(icon.width, icon.height) >= SMALLEST_ICON
    part = screen.pixels()[icon.top : icon.bottom, icon.left : icon.right].reshape(-1, 3)
    assert len(np.unique(part, axis=0)) >= COLOURS_OF_A_PICTURE
    player.close()
    tray.wait_for_no_icon()


def test_hidden_start_shows_the_icon_alone(player: Player, tray: Tray) -> None:
    start_hidden(player, tray)
    click_icon(player, tray)
    wait_for_both(player, "visible")


@pytest.mark.parametrize(
    ("button", "hidden"), [(HIDE_ALL_BUTTON, (VIDEO, REMOTE)), (HIDE_BUTTON, (REMOTE,))]
)
def test_icon_brings_back_what_a_button_hid(
    player: Player, tray: Tray, button: str, hidden: tuple[str, ...]
) -> None:
    player.start_and_show()
    Remote(player).click(button)
    for window in hidden:
        player.wait(window, "hidden")
    assert [window for window in BOTH if player.is_in(window, "hidden")] == list(hidden)
    click_icon(player, tray)
    wait_for_both(player, "visible")


def test_menu_opens_while_the_windows_stay_hidden(
    player: Player, tray: Tray, pointer: Pointer
) -> None:
    start_hidden(player, tray)
    menu = open_tray_menu(player, tray)
    assert are_both(player, "hidden")
    pointer.click(entry_in(menu, "Show"))
    wait_for_both(player, "visible")
    player.wait(POPUP_MENU, "gone")


def test_menu_hides_both_windows(player: Player, tray: Tray, pointer: Pointer) -> None:
    player.start_and_show()
    menu = open_tray_menu(player, tray)
    assert are_both(player, "visible")
    pointer.click(entry_in(menu, "Hide"))
    wait_for_both(player, "hidden")
    player.wait(POPUP_MENU, "gone")
    click_icon(player, tray)
    wait_for_both(player, "visible")


@pytest.mark.parametrize("hidden", [False, True])
def test_menu_closes_the_program(
    player: Player, tray: Tray, pointer: Pointer, hidden: bool
) -> None:
    if hidden:
        start_hidden(player, tray)
    else:
        player.start_and_show()
    menu = open_tray_menu(player, tray)
    pointer.click(entry_in(menu, "Close"))
    assert player.ended() == 0
    tray.wait_for_no_icon()


def test_click_elsewhere_closes_the_menu(player: Player, tray: Tray, pointer: Pointer) -> None:
    player.start_and_show()
    open_tray_menu(player, tray)
    pointer.click(player.client(VIDEO).centre)
    player.wait(POPUP_MENU, "gone")
    assert are_both(player, "visible")


def test_menu_lies_on_the_screen(player: Player, tray: Tray, screen: Screen) -> None:
    player.start_and_show()
    menu = open_tray_menu(player, tray)
    height, width, _ = screen.pixels().shape
    assert menu.left >= 0 and menu.top >= 0
    assert menu.right <= width and menu.bottom <= height
    player.pointer.key("Escape")
    player.wait(POPUP_MENU, "gone")


def test_icon_comes_back_when_the_shell_has_forgotten_it(player: Player, tray: Tray) -> None:
    start_hidden(player, tray)
    assert has_icon(player)
    player.ctl.ask("dropicon", f"{REMOTE}@{player.process}")
    tray.wait_for_no_icon()
    assert not has_icon(player)
    player.ctl.ask("shellstarted")
    until(lambda: has_icon(player), 5, "the shell has the icon again")
    click_icon(player, tray)
    wait_for_both(player, "visible")
