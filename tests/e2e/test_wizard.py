"""Marking a fragment, the wizard in its own process, and the jobs that the companion does."""

from __future__ import annotations

import json
import pathlib
import subprocess
import time

import clips
import numpy as np
import pytest
from companion import Companion, members, padded
from conftest import Desk
from options import OptionsDialog
from PIL import Image
from player import FILE_DIALOG, OK_BUTTON, PAUSED, REMOTE, VIDEO, Player
from remote import Remote, start_in_sight
from screen import Rect, Screen, colour_at, is_near
from stage import BUILD, PROGRAM_BUILD, windows_path
from test_options import is_still
from test_scaling import COLOURS_OF_TEXT, shades
from test_skins import settings
from waiting import equals, until
from windowmap import control_id
from wizard import (
    AUDIO_JOB,
    CANCEL,
    CUT,
    IMAGE_JOB,
    MARK_BEGIN,
    PROGRESS,
    VIDEO_JOB,
    WIZARD,
    Wizard,
)

PICTURES = BUILD / "screens"
MESSAGE_TEXT = 0xFFFF  # the text of a message box
WAITING, BESIDE = "1", "0"  # record 27
BEGIN, END = 2, 5  # seconds
JOB_SECONDS = 20
AWAY = (1260, 1000)


@pytest.fixture
def companion(player: Player) -> Companion:
    return Companion(player.folder)


def mark_and_open(player: Player, run: str = WAITING, **options: str) -> Wizard:
    """A fragment from the second to the fifth second of the usual clip, and the wizard on it."""
    changes = {int(number.removeprefix("record")): text for number, text in options.items()}
    player.folder.set_options({11: "40", 27: run, **changes})
    start_in_sight(player)
    player.pause_at(BEGIN)
    Remote(player).click(MARK_BEGIN)
    player.pause_at(END)
    return Wizard(player)


def is_back(player: Player, wizard: Wizard) -> bool:
    """All windows are there again and nothing of a job is left."""
    windows = all(player.is_in(window, "visible") for window in (VIDEO, REMOTE))
    return windows and wizard.is_idle() and not (player.folder.path / "flag.txt").exists()


def wait_until_back(player: Player, wizard: Wizard, seconds: float = JOB_SECONDS) -> None:
    until(lambda: is_back(player, wizard), seconds, "the windows are back and the wizard is idle")


def message(player: Player) -> str:
    """Reads and closes the message box of the player."""
    player.wait(FILE_DIALOG, "visible", JOB_SECONDS)
    text = player.ctl.ask("text", f"{FILE_DIALOG}@{player.process}", MESSAGE_TEXT)[0][0]
    player.ctl.ask("command", f"{FILE_DIALOG}@{player.process}", OK_BUTTON)
    player.wait(FILE_DIALOG, "gone")
    return text


# ---- the wizard ----


def test_marked_fragment_is_shown(player: Player, screen: Screen) -> None:
    wizard = mark_and_open(player)
    equals(lambda: wizard.text("Text1"), "00:00:02 -", 5, "the begin")
    equals(lambda: wizard.text("Text2"), "00:00:05", 5, "the end")
    assert player.playback().state == PAUSED
    assert wizard.process != player.process
    assert player.folder.marker() == b"0"
    player.pointer.move(AWAY)
    screen.save(PICTURES / "wizard-idle.png", wizard.rect())


@pytest.mark.parametrize("percent", [150, 200])
def test_wizard_is_crisp_at_other_scalings(desk: Desk, screen: Screen, percent: int) -> None:
    player = desk.player(96 * percent // 100)
    player.folder.set_options(settings("Daylight", percent))
    player.start_and_show()
    wizard = Wizard(player)
    player.pointer.move(AWAY)
    until(lambda: is_still(screen), 5, "it is painted")
    window = wizard.rect()
    screen.save(PICTURES / f"wizard-{percent}.png", window)
    assert window.right <= 1280 and window.bottom <= 1024
    assert shades(screen, window) >= COLOURS_OF_TEXT
    desk.finish_all()


def test_wizard_goes_with_its_player(player: Player) -> None:
    wizard = mark_and_open(player)
    player.close()
    assert wizard.is_in("gone")
    assert player.folder.processes() == []


def test_killed_wizard_is_replaced(player: Player, companion: Companion) -> None:
    companion.will()
    first = mark_and_open(player)
    [process] = [p for p in player.folder.processes() if is_wizard(p)]
    subprocess.run(["kill", "-9", str(process)], check=True)
    until(lambda: first.is_in("gone"), 5, "it is gone")
    second = Wizard(player)
    assert second.process != first.process
    second.ask_for(IMAGE_JOB, player.folder.path / "still.bmp")
    until(lambda: "finished" in companion.told(), JOB_SECONDS, "the job has been done")
    wait_until_back(player, second)


def test_wizard_serves_the_player_that_opened_it_last(
    player: Player, companion: Companion
) -> None:
    companion.will()
    mark_and_open(player)
    second = Player(player.ctl, player.pointer, player.folder)
    try:
        second.open_any(clips.path("red.avi"))
        wizard = Wizard(second, covered=True)
        equals(lambda: wizard.text("Text2"), "00:00:00", 5, "the end of the second fragment")
        wizard.ask_for(IMAGE_JOB, player.folder.path / "still.bmp")
        until(lambda: "finished" in companion.told(), JOB_SECONDS, "the job has been done")
        wait_until_back(second, wizard)
        told = companion.told()
        assert f"SourceFile\t{windows_path(clips.path('red.avi'))}" in told
        assert told.count("call Run") + told.count("call Start") == 1
        second.ctl.ask("close", f"{REMOTE}@{second.process}")
        assert second.ended() == 0
    finally:
        if second.process is not None:
            second.give_up()


def is_wizard(process: int) -> bool:
    return b"-Embedding" in pathlib.Path(f"/proc/{process}/cmdline").read_bytes()


def test_cancelled_dialogs_ask_for_nothing(player: Player, companion: Companion) -> None:
    companion.will()
    wizard = mark_and_open(player)
    for job in (VIDEO_JOB, AUDIO_JOB, IMAGE_JOB):
        wizard.cancel_dialog(job)
        assert wizard.is_idle()
    assert companion.log() == []


# ---- jobs ----

MODES = {VIDEO_JOB: 0, AUDIO_JOB: 1, IMAGE_JOB: 2}
NAMES = {VIDEO_JOB: "new film.avi", AUDIO_JOB: "песня.mp3", IMAGE_JOB: "still.bmp"}


@pytest.mark.parametrize("run", [WAITING, BESIDE])
@pytest.mark.parametrize("job", [VIDEO_JOB, AUDIO_JOB, IMAGE_JOB])
def test_job_is_told_in_its_order(player: Player, companion: Companion, job: str, run: str) -> None:
    companion.will("seconds 0.3", f"result {windows_path(clips.path('red.avi'))}")
    wizard = mark_and_open(player, run)
    target = player.folder.path / NAMES[job]
    wizard.ask_for(job, target)
    temporary = windows_path(target)[:-4] + "!.avi"
    output = temporary if job == AUDIO_JOB else padded(target)
    expected = members(player.folder, clips.path(), MODES[job], output, BEGIN, END)
    if job == AUDIO_JOB and run == BESIDE:
        expected.append(f"OutputFile\t{windows_path(target)}")
    expected += ["call Run" if run == WAITING else "call Start", "finished"]
    equals(companion.told, expected, JOB_SECONDS, "what the companion was told")
    wait_until_back(player, wizard)
    until(target.exists, 5, "the result is there")
    assert target.read_bytes() == clips.path("red.avi").read_bytes()
    assert not (player.folder.path / "песня!.avi").exists()


def test_job_beside_the_player_leaves_nothing_behind(
    player: Player, companion: Companion
) -> None:
    companion.will("seconds 2", "leaves")
    wizard = mark_and_open(player, BESIDE)
    wizard.ask_for(VIDEO_JOB, player.folder.path / "film.avi")
    until(lambda: "call Start" in companion.told(), JOB_SECONDS, "the job is under way")
    wait_until_back(player, wizard)
    assert "finished" not in companion.told(), "nobody waited for it"
    until(lambda: len(player.folder.processes()) == 2, 10, "the companion has ended")
    assert companion.told()[-1] == "finished"


def test_player_ends_the_jobs_beside_it(player: Player, companion: Companion) -> None:
    companion.will("seconds 60")
    wizard = mark_and_open(player, BESIDE)
    wizard.ask_for(VIDEO_JOB, player.folder.path / "film.avi")
    until(lambda: "call Start" in companion.told(), JOB_SECONDS, "the job is under way")
    wait_until_back(player, wizard)
    player.close()
    assert "finished" not in companion.told()


def test_picture_goes_along(player: Player, companion: Companion) -> None:
    companion.will()
    wizard = mark_and_open(
        player, record12="1", record13="C:\\logo.bmp", record14="250", record15="1000"
    )
    target = player.folder.path / "film.avi"
    wizard.ask_for(VIDEO_JOB, target)
    expected = members(player.folder, clips.path(), 3, padded(target), BEGIN, END)
    expected[1:1] = ["ImageX\t250", "ImageY\t1000", "ImagePath\tC:\\logo.bmp"]
    equals(companion.told, [*expected, "call Run", "finished"], JOB_SECONDS, "what it was told")
    wait_until_back(player, wizard)


def test_progress_is_shown_and_cancel_stops_the_job(
    player: Player, companion: Companion, screen: Screen
) -> None:
    companion.will("seconds 30", "progress")
    wizard = mark_and_open(player)
    wizard.ask_for(VIDEO_JOB, player.folder.path / "film.avi")
    for window in (VIDEO, REMOTE):
        player.wait(window, "hidden")
    until(lambda: wizard.shows(CANCEL) and wizard.shows(PROGRESS), 5, "progress is shown")
    equals(lambda: wizard.text(PROGRESS), "10 % copied", 10, "the progress")
    player.pointer.move(AWAY)
    screen.save(PICTURES / "wizard-busy.png", wizard.rect())
    wizard.click(CANCEL)
    wait_until_back(player, wizard, 10)
    assert companion.told()[-1] == "cancelled"
    companion.will()
    wizard.ask_for(IMAGE_JOB, player.folder.path / "still.bmp")
    until(lambda: "finished" in companion.told(), JOB_SECONDS, "the next job has been done")
    wait_until_back(player, wizard)


def test_player_answers_while_it_waits(player: Player, companion: Companion) -> None:
    """The icon's left button brings the windows back; the wizard's window can be moved."""
    companion.will("seconds 30")
    wizard = mark_and_open(player)
    wizard.ask_for(VIDEO_JOB, player.folder.path / "film.avi")
    player.wait(REMOTE, "hidden")
    until(lambda: "call Run" in companion.told(), 5, "the job runs")
    started = time.monotonic()
    icon_message, left_button_up = 0x200, 0x202
    player.ctl.ask("post", f"{REMOTE}@{player.process}", "", icon_message, 0, left_button_up)
    for window in (VIDEO, REMOTE):
        player.wait(window, "visible")
    assert time.monotonic() - started < 2
    player.close()


# ---- a companion that fails ----


DIED = "Framewright.exe stopped before the job was done."


@pytest.mark.parametrize(
    ("script", "told"),
    [
        *((f"die {member}", DIED) for member in ("Mode", "OutputFile", "ProcessId", "Run")),
        ("fail SourceFile It has no picture.", "Framewright.exe: It has no picture."),
    ],
)
def test_failing_companion_is_told_and_everything_comes_back(
    player: Player, companion: Companion, script: str, told: str
) -> None:
    companion.will(script)
    wizard = mark_and_open(player)
    wizard.ask_for(VIDEO_JOB, player.folder.path / "film.avi")
    assert message(player) == told
    wait_until_back(player, wizard)


def test_hanging_companion_can_be_cancelled(player: Player, companion: Companion) -> None:
    companion.will("hang Run")
    wizard = mark_and_open(player)
    wizard.ask_for(VIDEO_JOB, player.folder.path / "film.avi")
    until(lambda: wizard.shows(CANCEL), 5, "it can be cancelled")
    wizard.click(CANCEL)
    wait_until_back(player, wizard, 20)
    until(lambda: len(player.folder.processes()) == 2, 5, "the companion was ended")
    assert player.is_in(FILE_DIALOG, "gone"), "nobody needs to be told"


def test_missing_companion_is_told(player: Player) -> None:
    wizard = mark_and_open(player)
    wizard.ask_for(VIDEO_JOB, player.folder.path / "film.avi")
    assert "Framewright.exe" in message(player)
    wait_until_back(player, wizard)


# ---- sound ----


def compression_dialog(player: Player, button: int) -> None:
    """The system's own, for the sound of a WAVE file."""
    player.wait(FILE_DIALOG, "visible", JOB_SECONDS)
    player.ctl.ask("command", f"{FILE_DIALOG}@{player.process}", button)
    player.wait(FILE_DIALOG, "gone")


def probe(path: pathlib.Path) -> dict[str, str]:
    command = ["ffprobe", "-v", "error", "-show_streams", "-of", "json", str(path)]
    done = subprocess.run(command, capture_output=True, text=True, check=True)
    [stream] = json.loads(done.stdout)["streams"]
    return stream


def strongest_hertz(path: pathlib.Path) -> float:
    command = ["ffmpeg", "-v", "error", "-i", str(path), "-f", "s16le"]
    command += ["-ac", "1", "-ar", "44100", "-"]
    raw = subprocess.run(command, capture_output=True, check=True).stdout
    samples = np.frombuffer(raw, np.int16).astype(float)
    spectrum = np.abs(np.fft.rfft(samples * np.hanning(len(samples))))
    return float(np.argmax(spectrum)) * 44100 / len(samples)


SOUND = "tone 音!.avi"  # three seconds, 1000 Hz


def ask_for_wave(player: Player, companion: Companion, clip: str) -> tuple[Wizard, pathlib.Path]:
    companion.will(f"result {windows_path(clips.path(clip))}")
    wizard = mark_and_open(player)
    target = player.folder.path / "a song.wav"
    wizard.ask_for(AUDIO_JOB, target)
    return wizard, target


def test_wave_has_the_sound_of_the_clip(player: Player, companion: Companion) -> None:
    wizard, target = ask_for_wave(player, companion, SOUND)
    compression_dialog(player, OK_BUTTON)
    wait_until_back(player, wizard)
    stream = probe(target)
    assert stream["codec_name"].startswith("pcm_"), "the dialog's own first choice"
    assert abs(float(stream["duration"]) - 3.0) < 0.05
    assert abs(strongest_hertz(target) - 1000) < 2
    assert not (player.folder.path / "a song!.avi").exists()


def test_unwanted_compression_leaves_no_file(player: Player, companion: Companion) -> None:
    wizard, target = ask_for_wave(player, companion, SOUND)
    compression_dialog(player, 2)
    wait_until_back(player, wizard)
    assert not target.exists()
    assert not (player.folder.path / "a song!.avi").exists()


def test_clip_without_sound_is_told(player: Player, companion: Companion) -> None:
    wizard, target = ask_for_wave(player, companion, "silent.avi")
    clip = windows_path(player.folder.path / "a song!.avi")
    text = message(player).replace("\r\n", "\n")
    assert text == f"There was an error working with the file:\n{clip}"
    wait_until_back(player, wizard)
    assert not target.exists()


def test_cancel_during_the_copy_is_silent(player: Player, companion: Companion) -> None:
    wizard, _ = ask_for_wave(player, companion, "ten-minutes.avi")
    player.wait(FILE_DIALOG, "visible", JOB_SECONDS)
    (player.folder.path / "flag.txt").touch()  # as the wizard's Cancel does
    compression_dialog(player, OK_BUTTON)
    wait_until_back(player, wizard)
    assert player.is_in(FILE_DIALOG, "gone")
    assert not (player.folder.path / "a song!.avi").exists()


def test_other_ending_is_told(player: Player, companion: Companion) -> None:
    companion.will(f"result {windows_path(clips.path(SOUND))}")
    wizard = mark_and_open(player)
    wizard.ask_for(AUDIO_JOB, player.folder.path / "song.ogg")
    assert message(player) == "Invalid extension! Use *.wav or *.mp3"
    wait_until_back(player, wizard)
    assert (player.folder.path / "song!.avi").exists()


# ---- programs from outside ----

ALL_METHODS = [
    "init done",
    "hide_status done",
    "set_filepath done",
    "set_form7_status done",
    "update_numbers done",
    "Get_frwt_video false",
    "Get_frwt_audio false",
    "Get_frwt_image false",
    "Get_frwt_unload false",
    "Get_frwt_OutFilePath 0",
]

SCRIPT = """
Set wizard = CreateObject("NQP.CWizard")
Set files = CreateObject("Scripting.FileSystemObject")
Set output = files.CreateTextFile(WScript.Arguments(0))
wizard.init
output.WriteLine "init done"
wizard.hide_status
output.WriteLine "hide_status done"
wizard.set_filepath "C:\\a.avi"
output.WriteLine "set_filepath done"
wizard.set_form7_status "12 % copied"
output.WriteLine "set_form7_status done"
wizard.update_numbers "00:01:30 -", "00:02:00"
output.WriteLine "update_numbers done"
output.WriteLine "Get_frwt_video " & LCase(CStr(wizard.Get_frwt_video()))
output.WriteLine "Get_frwt_audio " & LCase(CStr(wizard.Get_frwt_audio()))
output.WriteLine "Get_frwt_image " & LCase(CStr(wizard.Get_frwt_image()))
output.WriteLine "Get_frwt_unload " & LCase(CStr(wizard.Get_frwt_unload()))
output.WriteLine "Get_frwt_OutFilePath " & Len(wizard.Get_frwt_OutFilePath())
output.Close
"""


@pytest.mark.parametrize("kind", ["script", "program"])
def test_program_from_outside_calls_every_method(desk: Desk, player: Player, kind: str) -> None:
    player.start_and_show()  # registers the class
    wait_for_class(desk)
    player.close()
    output = player.folder.path / "answers.txt"
    if kind == "script":
        script = player.folder.path / "client.vbs"
        script.write_text(SCRIPT)
        command = ["cscript", "//nologo", windows_path(script), windows_path(output)]
    else:
        client = PROGRAM_BUILD / "tests" / "wizard_client.exe"
        command = [windows_path(client), windows_path(output)]
    subprocess.run(["wine", *command], env=desk.stage.env, timeout=60, check=True)
    assert output.read_text().splitlines() == ALL_METHODS
    rows = [row for row in player.ctl.ask("list") if row[2] in (WIZARD, VIDEO, REMOTE)]
    assert [row[2] for row in rows] == [WIZARD], "no window but the wizard's"
    player.ctl.ask("close", WIZARD)
    until(lambda: not player.folder.processes(), 5, "its process has ended")


def wait_for_class(desk: Desk) -> None:
    query = ["wine", "reg", "query", "HKCR\\NQP.CWizard\\CLSID", "/ve"]

    def is_there() -> bool:
        done = subprocess.run(query, env=desk.stage.env, capture_output=True, check=False)
        return done.returncode == 0

    until(is_there, 10, "the class is registered")


# ---- often ----

OPENINGS = 500
SPARE_HANDLES = 20


def test_many_openings_leave_nothing_behind(player: Player) -> None:
    player.start_and_show()
    remote = f"{REMOTE}@{player.process}"
    cut = control_id(REMOTE, CUT)

    def open_and_close() -> None:
        player.ctl.ask("click", remote, cut)
        player.ctl.ask("wait", WIZARD, "visible", 10)
        player.ctl.ask("close", WIZARD)
        player.ctl.ask("wait", WIZARD, "gone", 10)

    for _ in range(20):
        open_and_close()
    before = int(player.ctl.ask("handles", player.process)[0][0])
    for _ in range(OPENINGS):
        open_and_close()
    after = int(player.ctl.ask("handles", player.process)[0][0])
    assert before > 0
    assert after <= before + SPARE_HANDLES
    assert len(player.folder.processes()) == 2, "the player and one wizard"
    player.close()


# ---- the picture in a fragment ----

PLACEMENT = "nqp.InsertBMPForm"
YES, NO = 6, 7
PICTURE_SIDE = 120


def put_picture(player: Player) -> pathlib.Path:
    path = player.folder.path / "лого.bmp"
    Image.new("RGB", (PICTURE_SIDE, PICTURE_SIDE), (255, 140, 0)).save(path)
    return path


def test_picture_is_dragged_to_its_place(player: Player, screen: Screen) -> None:
    picture = put_picture(player)
    player.folder.set_options({12: "1", 13: windows_path(picture), 27: WAITING})
    player.start_and_show()
    dialog = OptionsDialog(player)
    dialog.turn_to("fragments")
    dialog.click("Command5")
    player.wait(PLACEMENT, "visible")
    area = player.client(PLACEMENT)
    assert area.width >= 1200 and area.height >= 900, "it covers the screen"

    def box() -> Rect:
        return player.rect(PLACEMENT, control_id(PLACEMENT, "Picture1"))

    until(lambda: box().width == PICTURE_SIDE, 5, "the picture has its own size")
    until(lambda: is_near(colour_at(screen.pixels(), box().centre), (255, 140, 0)), 5, "it is seen")
    screen.save(PICTURES / "placement.png")
    free_width, free_height = area.width - PICTURE_SIDE, area.height - PICTURE_SIDE
    start = box().centre
    middle = (start[0] + free_width // 2, start[1] + free_height // 4)
    player.pointer.drag(start, middle)
    answer(player, NO)
    equals(
        lambda: player.ctl.ask("text", f"{PLACEMENT}@{player.process}")[0][0].split(" - ")[2],
        "X: 500   Y: 250",
        5,
        "the place",
    )
    player.pointer.drag(middle, (area.right - 5, middle[1]))
    answer(player, YES)
    player.wait(PLACEMENT, "hidden")  # its window goes with the outer dialog
    dialog.accept()
    assert (player.folder.option(14), player.folder.option(15)) == ("1000", "250")


def answer(player: Player, button: int) -> None:
    player.wait(FILE_DIALOG, "visible")
    box = f"{FILE_DIALOG}@{player.process}"
    assert player.ctl.ask("text", box, MESSAGE_TEXT) == [["Accept current position?"]]
    assert player.ctl.ask("text", box) == [["Nuvex Quillon Player"]]
    player.ctl.ask("command", box, button)
    player.wait(FILE_DIALOG, "gone")
