"""The whole way: a clip whose frames and seconds are marked is played, marked and cut with the real
companion, and what comes out is opened again and looked at from outside."""

from __future__ import annotations

import pathlib
import sys

import numpy as np
import pytest
from format_dialog import answer, probe
from PIL import Image
from player import Player
from remote import Remote
from screen import Screen
from stage import ROOT
from test_wizard import BEGIN, BESIDE, END, WAITING, compression_dialog, wait_until_back
from waiting import equals, until
from wizard import AUDIO_JOB, IMAGE_JOB, MARK_BEGIN, VIDEO_JOB, Wizard

sys.path.append(str(ROOT / "tests" / "companion"))
import evidence  # noqa: E402
import overlay  # noqa: E402
import sources  # noqa: E402
from marked_clip import HEIGHT, PAL, WIDTH, Clip  # noqa: E402

CLIP = sources.named("msmpeg4-pcm.avi")
H264_CLIP = sources.PLAIN
OK_BUTTON = 1
JOB_SECONDS = 30
PICTURE_SIZE = (38, 31)
PICTURE_PLACE = (333, 777)  # per mille
FIRST = int(BEGIN * PAL)
COUNT = int((END - BEGIN) * PAL)


def mark_clip(player: Player, run: str, clip: Clip = CLIP, **records: str) -> Wizard:
    """The clip plays, is held at both ends of the fragment, and the wizard is opened on it."""
    changes = {int(number.removeprefix("record")): text for number, text in records.items()}
    player.folder.set_options({11: "100", 27: run, **changes})
    player.open_any(clip.path)
    remote = Remote(player)
    remote.play()
    player.pause_at(BEGIN)
    remote.click(MARK_BEGIN)
    player.pause_at(END)
    return Wizard(player)


def number_on_screen(player: Player, screen: Screen) -> int | None:
    rect = player.client().fitted(WIDTH, HEIGHT)
    shown = screen.pixels()[rect.top : rect.bottom, rect.left : rect.right]
    picture = Image.fromarray(shown).convert("L").resize((WIDTH, HEIGHT))
    return evidence.numbers_in(np.asarray(picture)[None])[0]


def opens_again(player: Player, fragment: pathlib.Path, seconds: float) -> None:
    player.close()
    player.open_any(fragment)
    assert player.playback().duration == pytest.approx(seconds * 1000, abs=60)


def shows_its_frames(player: Player, screen: Screen) -> None:
    """At its begin and in its middle, where the player says that they are."""
    player.show_picture()
    for seconds in (0.0, 1.5):
        player.pause_at(seconds)
        wanted = FIRST + int(seconds * PAL)
        equals(lambda: number_on_screen(player, screen), wanted, 10, f"the frame at {seconds} s")


@pytest.mark.parametrize("clip", [CLIP, H264_CLIP], ids=lambda clip: clip.name)
@pytest.mark.parametrize("run", [WAITING, BESIDE])
def test_video(cutting: Player, screen: Screen, run: str, clip: Clip) -> None:
    wizard = mark_clip(cutting, run, clip)
    target = cutting.folder.path / "a film.avi"
    wizard.ask_for(VIDEO_JOB, target)
    answer(cutting, "OK")
    until(target.exists, JOB_SECONDS, "the fragment is there")
    wait_until_back(cutting, wizard, JOB_SECONDS)
    evidence.assert_exact(target, clip, BEGIN, END)
    opens_again(cutting, target, END - BEGIN)
    shows_its_frames(cutting, screen)


def test_video_with_a_picture(cutting: Player, screen: Screen) -> None:
    pixels = overlay.opaque(PICTURE_SIZE)
    picture = overlay.write_bmp(cutting.folder.path / "logo.bmp", pixels, 24)
    name = "Z:" + str(picture).replace("/", "\\")
    place = [str(part) for part in PICTURE_PLACE]
    wizard = mark_clip(
        cutting, WAITING, record12="1", record13=name, record14=place[0], record15=place[1]
    )
    target = cutting.folder.path / "film with logo.avi"
    wizard.ask_for(VIDEO_JOB, target)
    answer(cutting, "OK")
    wait_until_back(cutting, wizard, JOB_SECONDS)
    evidence.assert_exact(target, CLIP, BEGIN, END)
    size = (WIDTH, HEIGHT)
    at = overlay.place(PICTURE_PLACE, size, PICTURE_SIZE)
    assert overlay.misplacements(overlay.limited_lumas(target, size), pixels, at) == []
    opens_again(cutting, target, END - BEGIN)
    shows_its_frames(cutting, screen)


def test_sound_as_wave(cutting: Player) -> None:
    wizard = mark_clip(cutting, WAITING)
    target = cutting.folder.path / "song.wav"
    wizard.ask_for(AUDIO_JOB, target)
    compression_dialog(cutting, OK_BUTTON)
    wait_until_back(cutting, wizard, JOB_SECONDS)
    assert not target.with_name("song!.avi").exists()
    assert evidence.sound_differences(target, CLIP, BEGIN, END) == []
    opens_again(cutting, target, END - BEGIN)


@pytest.mark.parametrize("run", [WAITING, BESIDE])
def test_sound_as_mp3(cutting: Player, run: str) -> None:
    wizard = mark_clip(cutting, run, record10="48000")
    target = cutting.folder.path / "song.mp3"
    wizard.ask_for(AUDIO_JOB, target)
    until(target.exists, JOB_SECONDS, "the sound is there")
    wait_until_back(cutting, wizard, JOB_SECONDS)
    assert probe(target)["audio"]["sample_rate"] == "48000"
    assert evidence.sound_differences(target, CLIP, BEGIN, END) == []
    opens_again(cutting, target, END - BEGIN)


def test_still(cutting: Player) -> None:
    wizard = mark_clip(cutting, WAITING)
    target = cutting.folder.path / "still.bmp"
    wizard.ask_for(IMAGE_JOB, target)
    until(target.exists, JOB_SECONDS, "the still is there")
    wait_until_back(cutting, wizard, JOB_SECONDS)
    assert evidence.still_differences(target, CLIP, BEGIN) == []
