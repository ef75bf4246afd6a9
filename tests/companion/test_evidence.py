"""The tools that judge the cuts: fragments of the ffmpeg program are found exact, and each of the
faults that are looked for is found in a fragment that has it."""

from __future__ import annotations

import pathlib
import subprocess

import evidence
import overlay
import pytest
import sources

EXACT = ["-c:v", "mpeg4", "-q:v", "3", "-bf", "0", "-c:a", "pcm_s16le"]
BEGIN, END = 3.24, 6.48
FRAMES = list(range(81, 162))


def ffmpeg(*arguments: object) -> None:
    command = ["ffmpeg", "-nostdin", "-v", "error", "-y", *map(str, arguments)]
    subprocess.run(command, check=True)


def fragment(output: pathlib.Path, video: str, audio: str, *extra: str) -> pathlib.Path:
    """Of the plain clip, with these filters behind the ones that cut."""
    trim = f"start={BEGIN}:end={END}"
    chain = [f"[0:v]trim={trim},setpts=PTS-STARTPTS{video}[v]"]
    chain.append(f"[0:a]atrim={trim},asetpts=PTS-STARTPTS{audio}[a]")
    maps = ["-filter_complex", ";".join(chain), "-map", "[v]", "-map", "[a]"]
    ffmpeg("-i", sources.PLAIN.path, *maps, *EXACT, *extra, output)
    return output


def differences(output: pathlib.Path) -> list[str]:
    return evidence.video_differences(output, sources.PLAIN, BEGIN, END)


def test_an_exact_fragment_is_found_exact(tmp_path: pathlib.Path) -> None:
    output = fragment(tmp_path / "exact.avi", "", "")
    assert differences(output) == []
    assert evidence.frames_of(output).numbers == FRAMES


@pytest.mark.parametrize(
    ("video", "audio", "found"),
    [
        (",select='not(eq(n,30))'", "", "1 missing (111)"),
        (",select='gte(n,1)',setpts=PTS-STARTPTS", "", "1 frame late"),
        (",select='lt(n,80)'", "", "ends 1 frame early"),
        (",loop=loop=1:size=1:start=20,setpts=N/25/TB", "", "1 doubled"),
        (",tblend=all_mode=average", "", "frames unreadable"),
        ("", ",atrim=start=0.008,asetpts=PTS-STARTPTS", "clicks -8 ms"),
        ("", ",adelay=8:all=1", "clicks +8 ms"),
        ("", ",atrim=start=1,asetpts=PTS-STARTPTS,apad=pad_len=48000", "click 5 instead of 4"),
        ("", ",atrim=end=3", "sound -240 ms long"),
        ("", ",volume=enable='between(t,0.7,0.9)':volume=0", "click 4 missing"),
    ],
)
def test_a_fault_is_found(video: str, audio: str, found: str, tmp_path: pathlib.Path) -> None:
    output = fragment(tmp_path / "faulty.avi", video, audio, "-fps_mode", "cfr")
    assert any(found in difference for difference in differences(output))


def test_sound_that_stands_still_is_found_in_a_fragment_of_another_pace(
    tmp_path: pathlib.Path,
) -> None:
    output = fragment(tmp_path / "slow.avi", ",setpts=PTS*1.01", "", "-r", "24.752")
    assert any("shown +" in difference for difference in differences(output))


def test_a_lost_sound_is_found(tmp_path: pathlib.Path) -> None:
    output = fragment(tmp_path / "both.avi", "", "")
    ffmpeg("-i", output, "-an", "-c", "copy", tmp_path / "mute.avi")
    assert differences(tmp_path / "mute.avi") == ["sound lost"]


@pytest.mark.parametrize("name", ["exact.wav", "exact.mp3"])
def test_exact_sound_is_found_exact(name: str, tmp_path: pathlib.Path) -> None:
    trim = f"atrim=start={BEGIN}:end={END},asetpts=PTS-STARTPTS"
    ffmpeg("-i", sources.PLAIN.path, "-vn", "-af", trim, tmp_path / name)
    found = evidence.sound_differences(tmp_path / name, sources.PLAIN, BEGIN, END)
    assert found == []


def test_an_mp3_that_does_not_tell_its_delay_is_found(tmp_path: pathlib.Path) -> None:
    trim = f"atrim=start={BEGIN}:end={END},asetpts=PTS-STARTPTS"
    output = tmp_path / "bare.mp3"
    ffmpeg("-i", sources.PLAIN.path, "-vn", "-af", trim, "-write_xing", "0", output)
    found = evidence.sound_differences(output, sources.PLAIN, BEGIN, END)
    assert found != []


@pytest.mark.parametrize("late", [0, 1])
def test_a_still_is_told_by_its_number(late: int, tmp_path: pathlib.Path) -> None:
    output = tmp_path / "still.bmp"
    select = f"select='eq(n,{FRAMES[0] + late})'"
    ffmpeg("-i", sources.PLAIN.path, "-vf", select, "-frames:v", "1", "-pix_fmt", "bgr24", output)
    found = evidence.still_differences(output, sources.PLAIN, BEGIN + 0.01)
    assert found == (["1 frame late"] if late else [])


@pytest.mark.parametrize(("bits", "at"), [(24, (141, 75)), (32, (280, 150)), (24, (0, 0))])
@pytest.mark.parametrize("shift", [0, 1])
def test_a_picture_that_lies_one_pixel_off_is_found(
    bits: int, at: tuple[int, int], shift: int, tmp_path: pathlib.Path
) -> None:
    pixels = overlay.painted((38, 30))
    bmp = overlay.write_bmp(tmp_path / "picture.bmp", pixels, bits)
    plain, covered = tmp_path / "plain.avi", tmp_path / "covered.avi"
    to444, to420 = (f"scale=flags=neighbor,format=yuv{kind}p" for kind in (444, 420))
    lay = f"overlay=x={at[0] + shift}:y={at[1]}:format=yuv444"
    kind = ["-t", "0.4", "-an", "-c:v", "ffv1"]
    ffmpeg("-i", sources.PLAIN.path, "-vf", f"{to444},{to420}", *kind, plain)
    chain = f"[0:v]{to444}[v];[v][1:v]{lay},{to420}"
    ffmpeg("-i", sources.PLAIN.path, "-i", bmp, "-filter_complex", chain, *kind, covered)
    if bits == 24:
        pixels = overlay.opaque((38, 30))
    size = (320, 180)
    frames = overlay.planes_of(plain, size), overlay.planes_of(covered, size)
    found = overlay.differences(*frames, pixels, at, noise=3)
    assert any("it lies at" in text for text in found) == bool(shift), found
    assert bool(found) == bool(shift), found


def test_halves_of_a_pixel_are_rounded_up() -> None:
    assert overlay.place((500, 333), (320, 180), (37, 31)) == (142, 50)
