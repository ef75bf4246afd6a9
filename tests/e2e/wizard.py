"""The Quillon Wizard that a player has opened: a window of another process."""

from __future__ import annotations

import pathlib

from player import CANCEL_BUTTON, FILE_DIALOG, FILE_NAME_FIELD, OK_BUTTON, REMOTE, Player
from remote import Remote
from screen import Rect
from stage import windows_path
from waiting import equals, until
from windowmap import control_id

WIZARD, STATUS = "nqp.Form3", "nqp.Form7"
MARK_BEGIN, CUT = "Command1", "Command2"  # of the remote
VIDEO_JOB, AUDIO_JOB, IMAGE_JOB, CANCEL = "Command1", "Command2", "Command3", "Command4"
TITLES = {
    VIDEO_JOB: "Quillon Wizard - Save video fragment as...",
    AUDIO_JOB: "Quillon Wizard - Save audio fragment as...",
    IMAGE_JOB: "Quillon Wizard - Save image as...",
}
PLEASE_WAIT, PROGRESS = "Label7", "Text3"
START_SECONDS = 20.0


class Wizard:
    def __init__(self, player: Player, covered: bool = False) -> None:
        """Opens it from the remote, which marks the end of the fragment, and waits until it has
        been told which. A pointer does not reach a remote that is covered."""
        self.player = player
        remote = Remote(player)
        if covered:
            player.ctl.ask("click", f"{REMOTE}@{player.process}", control_id(REMOTE, CUT))
        else:
            remote.click(CUT)
        until(lambda: self.is_in("visible"), START_SECONDS, "the wizard is there")
        self.process = self._process()
        begin = ":".join(remote.text(field) for field in ("Text1", "Text2", "Text3"))
        equals(lambda: self.text("Text1"), f"{begin} -", 5, "the begin of the fragment")

    def _process(self) -> int:
        rows = self.player.ctl.ask("list")
        [process] = {int(row[1]) for row in rows if row[2] == WIZARD and row[4] == "1"}
        return process

    def _named(self) -> str:
        return f"{WIZARD}@{self.process}"

    def is_in(self, state: str) -> bool:
        return self.player.ctl.ask("is", WIZARD, state) == [["1"]]

    def rect(self, control: str = "") -> Rect:
        number: object = control_id(WIZARD, control) if control else ""
        return Rect(*map(int, self.player.ctl.ask("rect", self._named(), number)[0]))

    def text(self, control: str) -> str:
        return self.player.ctl.ask("text", self._named(), control_id(WIZARD, control))[0][0]

    def shows(self, control: str) -> bool:
        number = control_id(WIZARD, control)
        return self.player.ctl.ask("visible", self._named(), number) == [["1"]]

    def click(self, control: str) -> None:
        self.player.pointer.click(self.rect(control).centre)

    def is_idle(self) -> bool:
        return not any(map(self.shows, (PLEASE_WAIT, PROGRESS, CANCEL)))

    def open_dialog(self, job: str) -> str:
        """Clicks the button of a job; gives the name of its dialog."""
        self.click(job)
        dialog = f"{FILE_DIALOG}@{self.process}"
        self.player.ctl.ask("wait", dialog, "visible", 10)
        assert self.player.ctl.ask("text", dialog) == [[TITLES[job]]]
        return dialog

    def ask_for(self, job: str, target: pathlib.Path) -> None:
        """Through the real dialog."""
        dialog = self.open_dialog(job)
        text = windows_path(target)
        self.player.ctl.ask("settext", dialog, FILE_NAME_FIELD, text)
        equals(lambda: self.player.ctl.ask("text", dialog, FILE_NAME_FIELD), [[text]], 5, "field")
        self.player.ctl.ask("command", dialog, OK_BUTTON)
        self.player.ctl.ask("wait", dialog, "gone", 10)

    def cancel_dialog(self, job: str) -> None:
        dialog = self.open_dialog(job)
        self.player.ctl.ask("command", dialog, CANCEL_BUTTON)
        self.player.ctl.ask("wait", dialog, "gone", 10)

    def close(self) -> None:
        self.player.ctl.ask("close", self._named())
        until(lambda: self.is_in("gone"), 5, "the wizard is closed")
