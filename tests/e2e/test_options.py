"""The Options dialog: its looks, its mouse and keys, and what it does to the system."""

from __future__ import annotations

import datetime
import re
import subprocess
import time
from collections.abc import Callable

import clips
import pytest
import skins
from conftest import Desk
from options import CANCEL, FILE_TYPES, OPTIONS, PAGES, OptionsDialog
from player import FULL_SCREEN, IN_WINDOW, MENU, PLAYING, REMOTE, SET_DISPLAY, VIDEO, Player
from pointer import RIGHT
from remote import TITLE, Remote
from screen import Rect, Screen, colour_at, is_near
from skins import Skin
from stage import BUILD, windows_path
from test_scaling import COLOURS_OF_TEXT, shades
from test_skins import settings
from waiting import equals, until
from windowmap import control_id

PICTURES = BUILD / "screens"
AWAY = (1260, 1000)
STILL_SECONDS = 0.3  # without a change: painted to its end

FILLED = {
    9: "Graphite",
    10: "44100",
    11: "100",
    13: "C:\\pictures\\logo.bmp",
    14: "0",
    15: "0",
    16: "3",
    17: "5",
    18: "7",
    19: "30",
    20: "C:\\Users\\Ann\\Videos\\A quiet day by the sea.avi",
    21: "0",
    27: "1",
}


def is_still(screen: Screen) -> bool:
    before = screen.pixels()
    time.sleep(STILL_SECONDS)
    return bool((screen.pixels() == before).all())


@pytest.mark.parametrize("percent", [100, 150, 200])
def test_every_page_is_whole(
    scaled_player: Callable[[int], Player], screen: Screen, percent: int
) -> None:
    player = scaled_player(96 * percent // 100)
    player.folder.set_options({**settings("Graphite", percent), **FILLED})
    player.start_and_show()
    dialog = OptionsDialog(player)
    window = player.rect(OPTIONS)
    assert window.left >= 0 and window.top >= 0
    assert window.right <= 1280 and window.bottom <= 1024
    if percent == 150:
        assert window.width <= 1024 and window.height <= 768 - 60, "a task bar stays in sight"
    for page in PAGES:
        dialog.turn_to(page)
        player.pointer.move(AWAY)
        until(lambda: is_still(screen), 5, "the page is painted")
        screen.save(PICTURES / f"options-{page}-{percent}.png", window)
        assert shades(screen, window) >= COLOURS_OF_TEXT
    dialog.cancel()


# ---- mouse and keyboard ----


def colour_beside_title(player: Player, screen: Screen) -> tuple[int, int, int]:
    title = Remote(player).rect(TITLE)
    return colour_at(screen.pixels(), (title.right - 2, title.bottom - 2))


def test_mouse_changes_settings_at_once(player: Player, screen: Screen) -> None:
    player.folder.set_options({2: "0", 9: "Daylight"})
    player.start_and_show()
    dialog = OptionsDialog(player)
    dialog.click("Check2")
    dialog.turn_to("playback")
    dialog.click("Check8")
    dialog.turn_to("skin")
    skin_list = dialog.rect("List1")
    player.pointer.click((skin_list.left + 40, skin_list.top + 45))  # the third one
    dialog.accept()

    back = Skin("Graphite").colour(skins.TITLE_BACK)
    until(lambda: is_near(colour_beside_title(player, screen), back), 5, "the skin is on")
    assert player.is_topmost(VIDEO) and player.is_topmost(REMOTE)
    stored = {number: player.folder.option(number) for number in (2, 8, 9)}
    assert stored == {2: "1", 8: "1", 9: "Graphite"}

    dialog = OptionsDialog(player)
    dialog.click("Check2")
    dialog.accept()
    assert not player.is_topmost(VIDEO) and not player.is_topmost(REMOTE)
    assert player.folder.option(2) == "0"


def test_cancelled_dialog_changes_nothing(player: Player) -> None:
    player.start_and_show()
    before = player.folder.options_file.read_bytes()
    dialog = OptionsDialog(player)
    dialog.click("Check2")
    dialog.cancel()
    assert player.folder.options_file.read_bytes() == before
    assert not player.is_topmost(VIDEO)


def wait_for_keys(player: Player) -> None:
    player.wait(OPTIONS, "visible")
    until(lambda: player.pointer.focused_title().endswith(" - Options"), 5, "it has the keys")


def test_keyboard_alone_opens_changes_and_accepts(player: Player) -> None:
    player.folder.set_options({9: "Carnival"})
    player.start_and_show()
    remote, key = Remote(player), player.pointer.key
    remote.take_keys()
    key(*["Tab"] * 15, "Return")
    wait_for_keys(player)
    key("alt+r")  # a box of the first page
    key("ctrl+Tab", "ctrl+Tab", "Tab", "Down")  # the skin behind the first
    key("alt+s", "alt+m")
    key("Home", "Down", "Down")
    key("alt+d")
    key("Home", *["Down"] * 4)
    key("alt+t")
    player.pointer.type("07")
    key("Tab")
    player.pointer.type("30")
    key("alt+l")
    player.pointer.type("clip.avi")
    equals(
        lambda: player.text(OPTIONS, "Summary"),
        "Plays clip.avi on 5 March at 7:30, every year.",
        5,
        "the schedule in words",
    )
    key("Return")
    player.wait(OPTIONS, "gone")
    stored = {number: player.folder.option(number) for number in (1, 9, 16, 17, 18, 19, 20)}
    assert stored == {1: "1", 9: "Daylight", 16: "3", 17: "5", 18: "07", 19: "30", 20: "clip.avi"}

    player.pointer.wait_for_keys_at(player.rect(REMOTE))
    key("Return")  # its button still has the focus
    wait_for_keys(player)
    key("alt+r", "Escape")
    player.wait(OPTIONS, "gone")
    assert player.folder.option(1) == "1"


def test_other_windows_wait_for_the_dialog(player: Player) -> None:
    player.start_and_show()
    dialog = OptionsDialog(player)
    remote = Remote(player)
    remote.pointer.click(remote.rect("Picture16").centre)
    dialog.turn_to("schedule")
    until(lambda: dialog.shows("Combo1"), 5, "the page is turned")  # behind the click before it
    assert player.is_in(VIDEO, "visible") and player.is_in(REMOTE, "visible")
    dialog.cancel()


def test_dialog_takes_the_place_of_the_full_screen(player: Player, screen: Screen) -> None:
    player.open()
    player.show_picture()
    player.media(SET_DISPLAY, FULL_SCREEN)
    player.wait_for(display=FULL_SCREEN)
    player.pointer.click((200, 700), RIGHT)
    player.wait(MENU, "visible")
    options = next(row for row in player.ctl.ask("tree", f"{MENU}@{player.process}") if "Options" in row)
    player.pointer.click(Rect(*map(int, options[7:11])).centre)
    player.wait(OPTIONS, "visible")
    inside = player.client(OPTIONS).point(0.1, 0.9)
    until(lambda: colour_at(screen.pixels(), inside) == (255, 255, 255), 5, "the dialog is seen")
    assert player.playback().display == IN_WINDOW
    player.pointer.click(player.rect(OPTIONS, control_id(OPTIONS, CANCEL)).centre)
    player.wait(OPTIONS, "gone")
    assert player.is_in(VIDEO, "visible")


# ---- the system ----

CLASSES = "HKCU\\Software\\Classes"
RUN = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"
OTHER = "AnotherPlayer.audio"


class Registry:
    def __init__(self, desk: Desk) -> None:
        self._env = desk.stage.env
        self._file = desk.stage.folder / "exported.reg"

    def _reg(self, *words: str) -> subprocess.CompletedProcess[str]:
        command = ["wine", "reg", *words]
        return subprocess.run(
            command, env=self._env, capture_output=True, text=True, timeout=60, check=False
        )

    def set_default(self, key: str, value: str) -> None:
        assert self._reg("add", key, "/ve", "/d", value, "/f").returncode == 0

    def values(self, key: str) -> dict[str, str] | None:
        """The texts of a key, the default one under an empty name; None without the key. Exported,
        because the tool prints what no code page of the console has as question marks."""
        if self._reg("export", key, windows_path(self._file), "/y").returncode != 0:
            return None
        sections = self._file.read_text("utf-16").split("\n[")
        own = sections[1] if len(sections) > 1 else ""
        texts = re.findall(r'^(?:@|"(.*?)")="(.*)"$', own, re.MULTILINE)
        return {name: text.replace("\\\\", "\\") for name, text in texts}

    def value(self, key: str, name: str = "") -> str | None:
        return (self.values(key) or {}).get(name)

    def has(self, key: str) -> bool:
        return self.values(key) is not None


@pytest.fixture
def registry(desk: Desk) -> Registry:
    return Registry(desk)


def test_types_are_registered_and_given_back(
    player: Player, registry: Registry, screen: Screen
) -> None:
    registry.set_default(f"{CLASSES}\\.mp3", OTHER)
    player.start_and_show()
    dialog = OptionsDialog(player)
    dialog.click("Command3")
    player.wait(FILE_TYPES, "visible")
    player.pointer.move(AWAY)
    until(lambda: is_still(screen), 5, "the dialog is painted")
    screen.save(PICTURES / "file-types-100.png", player.rect(FILE_TYPES))

    own = f"{CLASSES}\\NuvexQuillonPlayer.mp3"
    command = windows_path(player.folder.path / "nqp.exe") + " %L"
    mp3, wav, avi = (f"{CLASSES}\\{extension}" for extension in (".mp3", ".wav", ".avi"))
    before = registry.value(avi)
    for box in ("Check1(4)", "Check1(5)"):
        dialog.click(box, FILE_TYPES)
    for _ in range(2):
        dialog.click("Command2", FILE_TYPES)
        equals(lambda: registry.value(mp3), "NuvexQuillonPlayer.mp3", 10, "what opens .mp3")
        equals(lambda: registry.value(wav), "NuvexQuillonPlayer.wav", 10, "what opens .wav")
        assert registry.value(f"{own}\\shell\\open\\command") == command
        assert registry.value(avi) == before
        dialog.click("Command1", FILE_TYPES)
        equals(lambda: registry.value(mp3), OTHER, 10, "what opens .mp3")
        until(lambda: not registry.has(own), 10, "the type is gone")
    player.pointer.key("Escape")
    player.wait(FILE_TYPES, "hidden")  # its window goes with the outer dialog
    assert player.is_in(OPTIONS, "visible")
    dialog.cancel()


def test_start_with_the_system_is_switched_on_and_off(player: Player, registry: Registry) -> None:
    player.start_and_show()
    for command in (windows_path(player.folder.path / "nqp.exe") + " /START", None):
        dialog = OptionsDialog(player)
        dialog.click("Check10")
        dialog.accept()
        equals(lambda: registry.value(RUN, "Nuvex Quillon Player"), command, 10, "the start")


# ---- scheduled play ----

TICK_SECONDS = 50


def test_scheduled_clip_plays_by_itself_out_of_the_tray(player: Player, screen: Screen) -> None:
    # The clock is looked at every 50 seconds: the minute of the first look, well inside of it.
    until(lambda: 2 < (datetime.datetime.now().second + TICK_SECONDS) % 60 < 50, 30, "the time")
    look = datetime.datetime.now() + datetime.timedelta(seconds=TICK_SECONDS)
    when = (look.month, look.day, look.hour, look.minute)
    clip = clips.PLAIN_CLIPS[1]
    schedule = {16 + index: str(number) for index, number in enumerate(when)}
    player.folder.set_options({**schedule, 4: "0", 20: windows_path(clips.path(clip.name))})
    player.start("/START")
    for window in (VIDEO, REMOTE):
        player.wait(window, "hidden", 20)
    for window in (VIDEO, REMOTE):
        player.wait(window, "visible", TICK_SECONDS + 10)
    player.wait_for(state=PLAYING, visible=1)
    until(
        lambda: is_near(colour_at(screen.pixels(), player.client().centre), clip.colour),
        5,
        "its picture is seen",
    )
    assert player.text(REMOTE, TITLE) == "Nuvex Quillon Player"
