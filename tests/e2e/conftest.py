"""Fixtures of the end-to-end tests: one stage for each process of the run, and players in it."""

from __future__ import annotations

import dataclasses
import os
import pathlib
import re
import shutil
import sys
from collections.abc import Callable, Iterator

import pytest

sys.path.insert(0, str(pathlib.Path(__file__).parent))

import clips as clip_files  # noqa: E402
from player import Player, ProgramFolder  # noqa: E402
from pointer import Pointer  # noqa: E402
from screen import Screen  # noqa: E402
from sound import Sound  # noqa: E402
from stage import BUILD, PLAIN_DPI, PROGRAM_BUILD, Stage  # noqa: E402
from winctl import Winctl  # noqa: E402

COMPANION = PROGRAM_BUILD / "companion" / "Framewright.exe"
FAILURES = BUILD / "e2e-failures"
LONGEST_FILE = "test_wizard.py"


@dataclasses.dataclass
class Desk:
    """The stage and what works on it."""

    stage: Stage
    screen: Screen
    sound: Sound
    pointer: Pointer
    players: list[Player] = dataclasses.field(default_factory=list)
    shared_key: str = ""
    drivers: dict[int, Winctl] = dataclasses.field(default_factory=dict)

    def winctl(self, dpi: int = PLAIN_DPI) -> Winctl:
        if dpi not in self.drivers:
            log = self.stage.folder / f"wine-{dpi}.log"
            log.touch()
            self.drivers[dpi] = Winctl(self.stage.prefix_env(dpi), log)
        return self.drivers[dpi]

    def player(self, dpi: int = PLAIN_DPI) -> Player:
        """A player that is not started yet. No other is on the screen beside it."""
        self.finish_all()
        folder = ProgramFolder(self.stage.folder)
        player = Player(self.winctl(dpi), self.pointer, folder)
        self.players.append(player)
        return player

    def shared(self, key: str, prepare: Callable[[Player], None]) -> Player:
        """A running player that following tests go on with when they ask for the same one."""
        if self.shared_key != key or not self.players:
            player = self.player()
            prepare(player)
            self.shared_key = key
        return self.players[0]

    def finish_all(self) -> None:
        """Closes the players as a person would. One that fails to close is left to `spoil`."""
        self.shared_key = ""
        while self.players:
            self.players[-1].close()
            self.players.pop()

    def spoil(self) -> None:
        """After a failed test nobody goes on with its player."""
        self.shared_key = ""
        while self.players:
            self.players.pop().give_up()


def pytest_sessionstart(session: pytest.Session) -> None:
    """What the processes of a run share is made before there is more than one."""
    if not hasattr(session.config, "workerinput"):
        shutil.rmtree(FAILURES, ignore_errors=True)
        clip_files.make()


def pytest_collection_modifyitems(items: list[pytest.Item]) -> None:
    """The file that takes longest comes first, so that the processes of a run end together."""
    items.sort(key=lambda item: item.path.name != LONGEST_FILE)


_desk: Desk | None = None


@pytest.fixture(scope="session")
def desk() -> Iterator[Desk]:
    global _desk
    stage = Stage()
    try:
        _desk = Desk(stage, Screen(stage.env), Sound(stage.env, stage.folder), Pointer(stage.env))
        yield _desk
        _desk.finish_all()
        for driver in _desk.drivers.values():
            driver.close()
    finally:
        _desk = None
        stage.close()


@pytest.fixture
def screen(desk: Desk) -> Screen:
    return desk.screen


@pytest.fixture
def sound(desk: Desk) -> Sound:
    return desk.sound


@pytest.fixture
def pointer(desk: Desk) -> Pointer:
    return desk.pointer


@pytest.fixture
def player(desk: Desk) -> Iterator[Player]:
    """A player that is not started yet, for one test."""
    made = desk.player()
    yield made
    if made in desk.players:
        desk.finish_all()


@pytest.fixture
def cutting(player: Player) -> Player:
    """A player with the real companion."""
    os.link(COMPANION, player.folder.path / COMPANION.name)
    return player


@pytest.fixture
def scaled_player(desk: Desk) -> Iterator[Callable[[int], Player]]:
    """Makes a player on a screen with more dots per inch."""
    yield desk.player
    desk.finish_all()


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item: pytest.Item) -> Iterator[None]:
    outcome = yield
    if outcome.get_result().failed and _desk is not None:
        _keep_evidence(_desk, FAILURES / re.sub(r"[^\w.-]+", "-", item.nodeid.split("/")[-1]))
        _desk.spoil()


def _keep_evidence(desk: Desk, folder: pathlib.Path) -> None:
    """A picture of the screen, the windows and the log of every player of the failed test."""
    folder.mkdir(parents=True, exist_ok=True)
    desk.screen.save(folder / "screen.png")
    for number, player in enumerate(desk.players):
        (folder / f"player-{number}.log").write_text(player.log_text())
        try:
            rows = player.ctl.ask("list")
        except AssertionError as error:
            rows = [[str(error)]]
        (folder / f"windows-{number}.txt").write_text("\n".join("\t".join(row) for row in rows))
