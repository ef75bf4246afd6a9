"""The remote control of a running player, under a real mouse."""

from __future__ import annotations

from player import PLAYING, REMOTE, Player
from pointer import Point
from screen import Rect
from waiting import until
from windowmap import control_id

PLAY_BUTTON, PAUSE_BUTTON, STOP_BUTTON, OPEN_BUTTON = "Picture2", "Picture4", "Picture3", "Picture6"
# What replaces a transport button while the pointer is over it, at the same place.
HIGHLIGHTED = {
    PLAY_BUTTON: "Picture7",
    PAUSE_BUTTON: "Picture9",
    STOP_BUTTON: "Picture8",
    OPEN_BUTTON: "Picture11",
}
OPTIONS_BUTTON, HELP_BUTTON, LIST_BUTTON = "Picture10", "Picture14", "Picture15"
HIDE_BUTTON, HIDE_ALL_BUTTON, EXIT_BUTTON = "Picture5", "Picture16", "Picture1"
POSITION_KNOB, VOLUME_KNOB = "Picture12", "Picture13"
SIZE_GRIP, WIDTH_GRIP = "Picture17", "Picture18"
TITLE, CLOCK, LIST = "Label1", "Label2", "List1"

# The ends of the position track and of the volume track, and a place where nothing stands,
# in pixels from the upper left corner of the face.
TRACK_LEFT, TRACK_RIGHT = 166, 428
TRACK_TOP, TRACK_BOTTOM = 8, 51
BARE_SPOT = (158, 30)


class Remote:
    def __init__(self, player: Player) -> None:
        self.player = player
        self.pointer = player.pointer

    def rect(self, control: str) -> Rect:
        return self.player.rect(REMOTE, control_id(REMOTE, control))

    def shows(self, control: str) -> bool:
        number = control_id(REMOTE, control)
        window = f"{REMOTE}@{self.player.process}"
        return self.player.ctl.ask("visible", window, number) == [["1"]]

    def text(self, control: str) -> str:
        return self.player.text(REMOTE, control)

    def click(self, control: str) -> None:
        self.pointer.click(self.rect(control).centre)

    def bare_spot(self) -> Point:
        window = self.player.rect(REMOTE)
        return window.left + BARE_SPOT[0], window.top + BARE_SPOT[1]

    def take_keys(self) -> None:
        """The window gets the keys; in a new one none of its controls has them. A click on the bare
        surface would begin to move the window, and then the keys end that."""
        self.click(TITLE)
        self.pointer.wait_for_keys_at(self.player.rect(REMOTE))

    def is_highlighted(self, button: str) -> bool:
        return self.shows(HIGHLIGHTED[button]) and not self.shows(button)

    def is_plain(self, button: str) -> bool:
        return self.shows(button) and not self.shows(HIGHLIGHTED[button])

    def point_at(self, button: str) -> None:
        self.pointer.move(self.rect(button).centre)
        until(lambda: self.is_highlighted(button), 5, f"{button} is highlighted")

    def leave_buttons(self) -> None:
        self.pointer.move(self.bare_spot())
        until(lambda: all(map(self.is_plain, HIGHLIGHTED)), 5, "no button is highlighted")

    def settle(self) -> None:
        """Until the program has done what it does for all that the mouse did so far: input is
        handled in its order, and the highlighted button can be seen."""
        self.leave_buttons()
        self.point_at(OPEN_BUTTON)
        self.leave_buttons()

    def play(self) -> None:
        self.click(PLAY_BUTTON)
        self.player.wait_for(state=PLAYING, visible=1)


def start_in_sight(player: Player) -> None:
    """The usual clip plays and its picture is seen."""
    player.open()
    Remote(player).play()
