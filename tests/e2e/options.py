"""The Options dialog of a running player, under a real mouse."""

from __future__ import annotations

from player import Player
from remote import OPTIONS_BUTTON, Remote
from screen import Rect
from windowmap import control_id

OPTIONS = "nqp.Form2"
FILE_TYPES = "nqp.Form8"
PAGES = {
    "general": "Label16",
    "playback": "Label17",
    "skin": "Label18",
    "fragments": "Label19",
    "schedule": "Label20",
}
OK, CANCEL = "Command2", "Command1"


class OptionsDialog:
    def __init__(self, player: Player) -> None:
        """Opens it from the remote."""
        self.player = player
        Remote(player).click(OPTIONS_BUTTON)
        player.wait(OPTIONS, "visible")

    def rect(self, control: str, window: str = OPTIONS) -> Rect:
        return self.player.rect(window, control_id(window, control))

    def shows(self, control: str) -> bool:
        number = control_id(OPTIONS, control)
        return self.player.ctl.ask("visible", f"{OPTIONS}@{self.player.process}", number) == [["1"]]

    def text(self, control: str) -> str:
        return self.player.text(OPTIONS, control)

    def click(self, control: str, window: str = OPTIONS) -> None:
        self.player.pointer.click(self.rect(control, window).centre)

    def turn_to(self, page: str) -> None:
        self.click(PAGES[page])

    def accept(self) -> None:
        self.click(OK)
        self.player.wait(OPTIONS, "gone")

    def cancel(self) -> None:
        self.click(CANCEL)
        self.player.wait(OPTIONS, "gone")
