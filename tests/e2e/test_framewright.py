"""Fragments that the real companion cuts for the real player, and its question for the format."""

from __future__ import annotations

import pathlib

import pytest
from format_dialog import DIALOG, answer, probe, wait_for_dialog
from player import Player
from screen import Rect, Screen
from stage import BUILD
from test_wizard import BESIDE, JOB_SECONDS, WAITING, mark_and_open, wait_until_back
from waiting import equals, until
from windowmap import control_id
from wizard import AUDIO_JOB, CANCEL, IMAGE_JOB, PROGRESS, VIDEO_JOB, Wizard

PICTURES = BUILD / "screens"
WHOLE = {"record11": "100"}  # every frame of the fragment
SECONDS = 3.0


def ask_for_video(player: Player, run: str = WAITING) -> tuple[Wizard, pathlib.Path]:
    wizard = mark_and_open(player, run, **WHOLE)
    target = player.folder.path / "новый film.avi"
    wizard.ask_for(VIDEO_JOB, target)
    return wizard, target


def test_video_is_cut_in_the_format_that_is_chosen(cutting: Player, screen: Screen) -> None:
    wizard, target = ask_for_video(cutting)
    wait_for_dialog(cutting, "visible")
    equals(lambda: wizard.text(PROGRESS), "0 % copied", 10, "the wizard is told of the job")
    window = Rect(*map(int, cutting.ctl.ask("rect", DIALOG, "")[0]))
    screen.save(PICTURES / "format-dialog.png", window)
    answer(cutting, "Smaller", "OK")
    wait_until_back(cutting, wizard)
    streams = probe(target)
    assert streams["video"]["codec_name"] == "mpeg4"
    assert streams["audio"]["codec_name"] == "mp3"
    assert float(streams["video"]["duration"]) == pytest.approx(SECONDS, abs=0.05)
    assert (cutting.folder.path / "status.txt").read_text() == "100 % copied"


def test_person_is_not_asked_again(cutting: Player) -> None:
    wizard, target = ask_for_video(cutting)
    answer(cutting, "MotionJpeg", "DoNotAsk", "OK")
    wait_until_back(cutting, wizard)
    second = target.with_name("second.avi")
    wizard.ask_for(VIDEO_JOB, second)
    until(second.exists, JOB_SECONDS, "the second fragment is cut without a question")
    wait_until_back(cutting, wizard)
    assert probe(second)["video"]["codec_name"] == "mjpeg"


def test_cancelled_question_cuts_nothing(cutting: Player) -> None:
    wizard, target = ask_for_video(cutting)
    answer(cutting, "Cancel")
    wait_until_back(cutting, wizard)
    assert not target.exists()


def test_question_goes_when_the_wizard_cancels_the_job(cutting: Player) -> None:
    wizard, target = ask_for_video(cutting)
    wait_for_dialog(cutting, "visible")
    cutting.ctl.ask("click", "nqp.Form3", control_id("nqp.Form3", CANCEL))
    wait_for_dialog(cutting, "gone")
    wait_until_back(cutting, wizard)
    assert not target.exists()


@pytest.mark.parametrize("run", [WAITING, BESIDE])
def test_sound_becomes_an_mp3_of_the_rate_in_the_options(cutting: Player, run: str) -> None:
    wizard = mark_and_open(cutting, run, record10="22050", **WHOLE)
    target = cutting.folder.path / "песня.mp3"
    wizard.ask_for(AUDIO_JOB, target)
    until(target.exists, JOB_SECONDS, "the sound is there")
    wait_until_back(cutting, wizard)
    sound = probe(target)["audio"]
    assert (sound["codec_name"], sound["sample_rate"]) == ("mp3", "22050")
    assert float(sound["duration"]) == pytest.approx(SECONDS, abs=0.1)
    assert not target.with_name("песня!.avi").exists()


def test_sound_for_a_wave_comes_as_a_clip(cutting: Player) -> None:
    """The player turns it into the file that its user wants."""
    wizard = mark_and_open(cutting, BESIDE, **WHOLE)
    target = cutting.folder.path / "song.wav"
    wizard.ask_for(AUDIO_JOB, target)
    until(target.exists, JOB_SECONDS, "the sound is there")
    wait_until_back(cutting, wizard)
    assert float(probe(target)["audio"]["duration"]) == pytest.approx(SECONDS, abs=0.05)


def test_still_is_cut_without_a_question(cutting: Player) -> None:
    wizard = mark_and_open(cutting)
    target = cutting.folder.path / "still.bmp"
    wizard.ask_for(IMAGE_JOB, target)
    until(target.exists, JOB_SECONDS, "the still is there")
    wait_until_back(cutting, wizard)
    assert target.read_bytes()[:2] == b"BM"

