"""The program under test, in a program folder of its own."""

from __future__ import annotations

import dataclasses
import itertools
import os
import pathlib
import re
import shutil
import signal

import clips
from pointer import RIGHT, Point, Pointer
from records import read_record, write_records
from screen import Rect
from stage import PROGRAM_BUILD, windows_path
from waiting import equals, until
from winctl import Winctl
from windowmap import control_id

VIDEO = "nqp.Form1"
REMOTE = "nqp.Form4"
MENU = "nqp.Form5"
PLAY_RATE = "nqp.Form6"
STATISTICS = "nqp.Statistics"
WINDOWS = (VIDEO, REMOTE, MENU, PLAY_RATE, STATISTICS)

# The system's open dialog.
FILE_DIALOG = "#32770"
FILE_NAME_FIELD = 0x47C
OK_BUTTON, CANCEL_BUTTON = 1, 2

STOPPED, PAUSED, PLAYING = 0, 1, 2
FULL_SCREEN, IN_WINDOW = 3, 0
LOUDEST, SILENT = 0, -10000

# Properties of the media window.
SET_POSITION, SET_VOLUME, SET_RATE, SET_DISPLAY = 102, 104, 105, 108
PLAY, PAUSE = 120, 121

TOPMOST_STYLE = 0x8
START_SECONDS = 20.0
CRASH = re.compile(r"[Uu]nhandled (?:page fault|exception)|err:seh|terminate called|Assertion failed")

# What a test starts from when it says nothing else: clips start to play when they are opened.
OPTIONS = {1: "0", 2: "0", 3: "0", 4: "1", 5: "0", 6: "0", 9: "Daylight", 27: "0"}
SKINS = PROGRAM_BUILD / "skins"

_numbers = itertools.count(1)


class ProgramFolder:
    """The folder a person would have, under a path with a blank and a non-Latin letter."""

    def __init__(self, parent: pathlib.Path) -> None:
        self.path = parent / f"программа {next(_numbers)}"
        self.path.mkdir(parents=True)
        shutil.copy(PROGRAM_BUILD / "src" / "nqp.exe", self.path)
        # Links: whoever changes a skin makes a copy of his own first.
        shutil.copytree(SKINS, self.path / "Skins", copy_function=os.link)
        self.set_marker(b"0")
        self.playlist_file.touch()
        self.set_options({})

    @property
    def options_file(self) -> pathlib.Path:
        return self.path / "options.cfg"

    def set_options(self, changes: dict[int, str]) -> None:
        write_records(self.options_file, {**OPTIONS, **changes})

    @property
    def playlist_file(self) -> pathlib.Path:
        return self.path / "playlist.cfg"

    def option(self, number: int) -> str:
        return read_record(self.options_file, number)

    def processes(self) -> list[int]:
        """Whatever runs out of this folder, by the numbers of the host system."""
        name = windows_path(self.path).encode()
        found = []
        for entry in pathlib.Path("/proc").iterdir():
            try:
                if entry.name.isdigit() and name in (entry / "cmdline").read_bytes():
                    found.append(int(entry.name))
            except OSError:
                continue  # it has ended meanwhile
        return found

    def set_marker(self, content: bytes | None) -> None:
        marker = self.path / "startup.cfg"
        if content is None:
            marker.unlink(missing_ok=True)
        else:
            marker.write_bytes(content)

    def marker(self) -> bytes:
        return (self.path / "startup.cfg").read_bytes()


@dataclasses.dataclass(frozen=True)
class Playback:
    state: int
    position: int  # milliseconds; -1 with nothing loaded
    duration: int  # milliseconds
    volume: int
    rate: int  # per mille
    ready: int
    visible: int
    display: int
    frames: int


class Player:
    def __init__(self, ctl: Winctl, pointer: Pointer, folder: ProgramFolder) -> None:
        self.ctl = ctl
        self.pointer = pointer
        self.folder = folder
        self.process: int | None = None
        self._log_start = ctl.log.stat().st_size

    # ---- life ----

    def start(self, command_line: str = "") -> None:
        """`command_line` is what follows the program's name, character for character."""
        elsewhere = windows_path(self.folder.path.parent)
        program = windows_path(self.folder.path / "nqp.exe")
        self.process = int(self.ctl.ask("start", program, elsewhere, command_line)[0][0])

    def start_and_show(self, command_line: str = "") -> None:
        self.start(command_line)
        for window in (VIDEO, REMOTE):
            self.wait(window, "visible", START_SECONDS)

    def open_any(self, clip: pathlib.Path) -> None:
        """Starts with a clip on the command line and waits until it is loaded."""
        self.start_and_show(windows_path(clip))
        until(lambda: self.playback().duration > 0, START_SECONDS, "the clip is loaded")

    def open(self) -> None:
        """Starts with the usual clip and waits until its picture is there."""
        self.open_any(clips.path())
        until(lambda: self.playback().frames > 0, START_SECONDS, "the first picture is drawn")

    def ended(self, seconds: float = 15) -> int:
        """Waits for the end of the process; gives its exit code."""
        code = int(self.ctl.ask("ended", self.process, seconds)[0][0])
        self.process = None
        assert not self.crash_lines(), self.crash_lines()
        return code

    def close(self) -> None:
        if self.process is None:
            return
        self.ctl.ask("close", self._named(REMOTE))
        assert self.ended() == 0
        until(lambda: not self.folder.processes(), 5, "what it had started has ended too")

    def give_up(self) -> None:
        """After a failed test: ends the process whatever state it is in, and those it brought."""
        if self.process is not None:
            self.ctl.ask("kill", self.process)
            self.ctl.ask("ended", self.process, 10)
            self.process = None
        for process in self.folder.processes():
            os.kill(process, signal.SIGKILL)

    def log_text(self) -> str:
        with self.ctl.log.open("rb") as log:
            log.seek(self._log_start)
            return log.read().decode(errors="replace")

    def crash_lines(self) -> list[str]:
        return [line for line in self.log_text().splitlines() if CRASH.search(line)]

    # ---- windows ----

    def _named(self, window: str) -> str:
        return f"{window}@{self.process}"

    def wait(self, window: str, state: str, seconds: float = 5) -> None:
        self.ctl.ask("wait", self._named(window), state, seconds, seconds=seconds + 20)

    def is_in(self, window: str, state: str) -> bool:
        return self.ctl.ask("is", self._named(window), state) == [["1"]]

    def rect(self, window: str, control: object = "") -> Rect:
        return Rect(*map(int, self.ctl.ask("rect", self._named(window), control)[0]))

    def client(self, window: str = VIDEO) -> Rect:
        return Rect(*map(int, self.ctl.ask("client", self._named(window))[0]))

    def answer_open_dialog(self, chosen: pathlib.Path | None) -> None:
        """Opens a file in the system's dialog that is up; without one cancels it."""
        dialog = self._named(FILE_DIALOG)
        if chosen is not None:
            self.ctl.ask("settext", dialog, FILE_NAME_FIELD, windows_path(chosen))
        self.ctl.ask("command", dialog, CANCEL_BUTTON if chosen is None else OK_BUTTON)
        self.wait(FILE_DIALOG, "gone")

    def answer_with_several(self, folder: pathlib.Path, names: list[str]) -> None:
        """Chooses files of one folder in the system's dialog that is up: first the folder, which
        empties the field, then the names in quotes."""
        dialog = self._named(FILE_DIALOG)

        def enter(text: str) -> None:
            self.ctl.ask("settext", dialog, FILE_NAME_FIELD, text)
            self.ctl.ask("command", dialog, OK_BUTTON)

        enter(windows_path(folder))
        equals(lambda: self.ctl.ask("text", dialog, FILE_NAME_FIELD), [[""]], 5, "the field")
        enter(" ".join(f'"{name}"' for name in names))
        self.wait(FILE_DIALOG, "gone")

    def wait_for_rect(self, wanted: Rect, window: str = VIDEO, tolerance: int = 1) -> None:
        def is_there() -> bool:
            nonlocal seen
            seen = self.rect(window)
            pairs = zip(dataclasses.astuple(seen), dataclasses.astuple(wanted))
            return all(abs(a - b) <= tolerance for a, b in pairs)

        seen = self.rect(window)
        try:
            until(is_there, 5, "")
        except AssertionError:
            raise AssertionError(f"{window} is at {seen}, not at {wanted}") from None

    def text(self, window: str, control: str) -> str:
        number = control_id(window, control)
        return self.ctl.ask("text", self._named(window), number)[0][0]

    def is_topmost(self, window: str) -> bool:
        return bool(int(self.ctl.ask("style", self._named(window))[0][1]) & TOPMOST_STYLE)

    def foreground(self) -> str:
        return self.ctl.ask("foreground")[0][1]

    # ---- the media window ----

    def playback(self) -> Playback:
        return Playback(*map(int, self.ctl.ask("playback", f"@{self.process}")[0]))

    def media(self, number: int, value: int = 0) -> int:
        return int(self.ctl.ask("media", f"@{self.process}", number, value)[0][0])

    def wait_for(self, **wanted: int) -> None:
        """Waits until the playback has these values, as in wait_for(state=PAUSED)."""

        def read() -> dict[str, int]:
            now = dataclasses.asdict(self.playback())
            return {name: now[name] for name in wanted}

        equals(read, wanted, 10, "the playback")

    def play(self) -> None:
        self.media(PLAY)
        self.wait_for(state=PLAYING)

    def pause(self) -> None:
        self.media(PAUSE)
        self.wait_for(state=PAUSED)

    def seek(self, seconds: float) -> None:
        self.media(SET_POSITION, round(seconds * 1000))

    def pause_at(self, seconds: float) -> None:
        if self.playback().state == PLAYING:
            self.pause()
        self.seek(seconds)

    # ---- the context menu ----

    def open_menu(self, at: Point | None = None) -> None:
        self.pointer.click(at or self.client().centre, RIGHT)
        self.wait(MENU, "visible")

    def choose(self, caption: str) -> None:
        """Opens the context menu with the mouse and clicks the command."""
        self.open_menu()
        for row in self.ctl.ask("tree", self._named(MENU)):
            if row[4] == caption:
                self.pointer.click(Rect(*map(int, row[7:11])).centre)
                break
        else:
            raise AssertionError(f"the context menu has no command {caption!r}")
        until(self.menu_is_off_the_screen, 5, "the menu closes")

    def menu_is_off_the_screen(self) -> bool:
        """Its window outlives it, unseen, for as long as a modal dialog is up."""
        return self.is_in(MENU, "gone") or self.is_in(MENU, "hidden")

    def show_picture(self) -> None:
        """The video window comes to the front, and the picture that this hides is shown again."""
        self.choose("Play")
        self.wait_for(state=PLAYING, visible=1)
