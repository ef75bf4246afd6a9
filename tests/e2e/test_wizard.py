"""Marking a fragment, the wizard in its own process, and the jobs that the companion does."""

from __future__ import annotations

from player import PAUSED, Player
from remote import Remote, start_in_sight
from screen import Screen
from stage import BUILD
from waiting import until
from wizard import MARK_BEGIN, Wizard

PICTURES = BUILD / "screens"


def test_trial(player: Player, screen: Screen) -> None:
    start_in_sight(player)
    player.pause_at(2.0)
    remote = Remote(player)
    remote.click(MARK_BEGIN)
    player.seek(5.0)
    screen.save(PICTURES / "wizard-remote.png")
    wizard = Wizard(player)
    screen.save(PICTURES / "wizard-idle.png")
    print(player.log_text())
