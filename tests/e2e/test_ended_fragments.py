"""Jobs of the real companion that do not come to their end: cancelled in the wizard, or killed.

NQP_HARDSHIP=full: at ten moments of each kind, not three.
"""

from __future__ import annotations

import os
import pathlib
import random
import signal
import subprocess
import time

import clips
import pytest
from format_dialog import answer
from player import Player
from remote import Remote
from test_wizard import AUDIO_JOB, VIDEO_JOB, WAITING, message, wait_until_back
from waiting import until
from wizard import CANCEL, MARK_BEGIN, PROGRESS, Wizard

MOMENTS = 10 if os.environ.get("NQP_HARDSHIP") == "full" else 3
SEED = 7
LONGEST_WAIT = 1.2  # seconds into a job
LATENCY = 0.5
LONG_SECONDS = 600
JOB_SECONDS = 30
LEFTOVERS = "*.framewright-part"
TARGETS = {VIDEO_JOB: "film.avi", AUDIO_JOB: "song.mp3"}


@pytest.fixture(scope="session")
def long_clip() -> pathlib.Path:
    """The usual clip many times over; no job is done with it in the time of a test."""
    path = clips.path("long.avi")
    if not path.exists():
        times = str(int(LONG_SECONDS / clips.SECONDS) - 1)
        part = path.with_name(".part.long.avi")
        command = ["ffmpeg", "-nostdin", "-v", "error", "-y", "-stream_loop", times]
        command += ["-i", str(clips.path()), "-c", "copy", str(part)]
        subprocess.run(command, check=True)
        part.rename(path)
    return path


@pytest.fixture
def wizard(cutting: Player, long_clip: pathlib.Path) -> Wizard:
    """On the whole of the long clip, by a person who does not want to be asked again."""
    cutting.folder.set_options({11: "100", 27: WAITING})
    cutting.open_any(long_clip)
    remote = Remote(cutting)
    remote.play()
    cutting.pause_at(0)
    remote.click(MARK_BEGIN)
    cutting.pause_at(LONG_SECONDS - 1)
    opened = Wizard(cutting)
    opened.ask_for(VIDEO_JOB, cutting.folder.path / TARGETS[VIDEO_JOB])
    answer(cutting, "DoNotAsk", "OK")
    until(lambda: leftovers(cutting), JOB_SECONDS, "the job is under way")
    opened.click(CANCEL)
    wait_until_back(cutting, opened)
    return opened


def leftovers(player: Player) -> list[pathlib.Path]:
    return list(player.folder.path.glob(LEFTOVERS))


def companions(player: Player) -> list[int]:
    """By the numbers of the host system."""
    found = []
    for process in player.folder.processes():
        try:
            line = pathlib.Path(f"/proc/{process}/cmdline").read_bytes()
        except OSError:
            continue  # it has ended meanwhile
        if b"Framewright.exe" in line:
            found.append(process)
    return found


def written(player: Player) -> set[int]:
    """What is being written, or was; by numbers that no other file gets meanwhile."""
    return {path.stat().st_ino for path in leftovers(player)}


def begin(player: Player, wizard: Wizard, job: str, moment: float) -> None:
    """A job that writes its own file and has removed that of the one before; some time in it."""
    earlier = [path.open("rb") for path in leftovers(player)]
    before = {os.fstat(file.fileno()).st_ino for file in earlier}

    def is_under_way() -> bool:
        now = written(player)
        return len(now) == 1 and not now & before

    wizard.ask_for(job, player.folder.path / TARGETS[job])
    until(is_under_way, JOB_SECONDS, "the job is under way")
    for file in earlier:
        file.close()
    until(lambda: wizard.shows(CANCEL) and wizard.shows(PROGRESS), 5, "the wizard shows the job")
    time.sleep(moment)


def nothing_but_the_player(player: Player) -> bool:
    return not companions(player) and not (player.folder.path / "flag.txt").exists()


def moments() -> list[float]:
    chance = random.Random(SEED)
    return [chance.uniform(0, LONGEST_WAIT) for _ in range(MOMENTS)]


@pytest.mark.parametrize("job", [VIDEO_JOB, AUDIO_JOB], ids=["video", "sound"])
def test_cancelled_job_ends_at_once_and_leaves_nothing(
    cutting: Player, wizard: Wizard, job: str
) -> None:
    for moment in moments():
        begin(cutting, wizard, job, moment)
        flag = cutting.folder.path / "flag.txt"
        wizard.click(CANCEL)
        until(flag.exists, 5, "the wizard has cancelled")
        cancelled = time.monotonic()
        until(lambda: not leftovers(cutting), 5, "the file that was written is gone")
        assert time.monotonic() - cancelled <= LATENCY
        wait_until_back(cutting, wizard)
        until(lambda: nothing_but_the_player(cutting), 5, "nothing of the job is left")
        assert not (cutting.folder.path / TARGETS[job]).exists()


@pytest.mark.parametrize("job", [VIDEO_JOB, AUDIO_JOB], ids=["video", "sound"])
def test_killed_companion_leaves_what_the_next_job_removes(
    cutting: Player, wizard: Wizard, job: str
) -> None:
    for moment in moments():
        begin(cutting, wizard, job, moment)
        [own] = leftovers(cutting)
        for process in companions(cutting):
            os.kill(process, signal.SIGKILL)
        assert "Framewright.exe" in message(cutting)
        wait_until_back(cutting, wizard)
        assert leftovers(cutting) == [own]
        assert not (cutting.folder.path / TARGETS[job]).exists()
        assert cutting.playback().duration > 0, "the player lives"
    begin(cutting, wizard, job, 0)
    wizard.click(CANCEL)
    wait_until_back(cutting, wizard)
    assert leftovers(cutting) == []
