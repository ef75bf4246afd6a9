"""Clips that tell which piece of them one is looking at.

Every frame carries its number as a bar code: two rows of ten large cells across the middle third,
sixteen bits in Gray code and four that check them. Above and below it is plain grey, above with
small squares of two colours of that brightness.
The sound is silence but for bursts of two milliseconds: one of 1000 Hz at every whole second, and
after it one of 2000 Hz whose distance tells which second that was (`sign_delay`).
"""

from __future__ import annotations

import contextlib
import dataclasses
import fcntl
import hashlib
import pathlib
import subprocess
import tempfile
import wave
from collections.abc import Iterator
from fractions import Fraction

import numpy as np

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = ROOT / "build" / "companion" / "clips"

WIDTH, HEIGHT = 320, 180
COLUMNS, ROWS = 10, 2
DATA_BITS, CHECK_BITS = 16, 4
BAND = (HEIGHT // 3, HEIGHT * 2 // 3)
BLACK, GREY, WHITE = 16, 128, 235

CLICK_HERTZ, SIGN_HERTZ = 1000, 2000
BURST_SECONDS = 0.002
LOUDNESS = 0.8
SIGNS = 20

PAL = Fraction(25)
NTSC = Fraction(30000, 1001)
FILM = Fraction(24000, 1001)

# Slots out of ten of a grid of 50 that a variable rate fills.
UNEVEN_SLOTS = (0, 1, 3, 6, 7)

Arguments = tuple[str, ...]


@dataclasses.dataclass(frozen=True)
class Picture:
    codec: Arguments
    fps: Fraction = PAL
    size: tuple[int, int] = (WIDTH, HEIGHT)
    slots: tuple[int, ...] = ()  # of ten, that hold a frame; none named: all
    turned: int = 0  # degrees clockwise that a player turns it by: 0, 90, 180, 270
    interlaced: bool = False
    pixel_aspect: Fraction = Fraction(1)


@dataclasses.dataclass(frozen=True)
class Sound:
    codec: Arguments
    rate: int = 48000
    channels: int = 2


@dataclasses.dataclass(frozen=True)
class Clip:
    name: str  # with the extension that says the container
    picture: Picture | None
    sound: Sound | None
    seconds: float = 8.0
    extra: Arguments = ()  # for the container

    @property
    def path(self) -> pathlib.Path:
        """Makes the file when it is not there yet."""
        stem, dot, extension = self.name.rpartition(".")
        key = hashlib.sha256((repr(self) + _own_text()).encode()).hexdigest()[:8]
        target = FOLDER / f"{stem}-{key}{dot}{extension}"
        if not target.exists():
            _make(self, target)
        return target

    def frame_times(self) -> list[Fraction]:
        """When each frame is first shown, in seconds from the first one."""
        assert self.picture is not None
        slots = range(round(self.seconds * self.picture.fps))
        kept = self.picture.slots
        return [slot / self.picture.fps for slot in slots if not kept or slot % 10 in kept]

    def length(self) -> Fraction:
        """In seconds, of the picture; without one of the sound."""
        if self.picture is None:
            return Fraction(self.seconds)
        return round(self.seconds * self.picture.fps) / self.picture.fps


def _own_text() -> str:
    return pathlib.Path(__file__).read_text()


# ---- the picture ----


def check_bits(gray: int) -> int:
    nibbles = [(gray >> shift) & 15 for shift in (0, 4, 8, 12)]
    return (nibbles[0] + 3 * nibbles[1] + 5 * nibbles[2] + 7 * nibbles[3] + 9) & 15


def cells_of(number: int) -> list[bool]:
    """From the left, upper row first; true is white."""
    gray = number ^ (number >> 1)
    code = gray << CHECK_BITS | check_bits(gray)
    return [bool(code >> bit & 1) for bit in reversed(range(DATA_BITS + CHECK_BITS))]


def number_of(cells: list[bool]) -> int | None:
    """Nothing when the check bits do not belong to the others."""
    code = int("".join("01"[cell] for cell in cells), 2)
    gray, check = code >> CHECK_BITS, code & ((1 << CHECK_BITS) - 1)
    if check != check_bits(gray):
        return None
    number = 0
    while gray:
        number ^= gray
        gray >>= 1
    return number


def luma(number: int, size: tuple[int, int]) -> np.ndarray:
    width, height = size
    plane = np.full((height, width), GREY, np.uint8)
    top, bottom = (edge * height // HEIGHT for edge in BAND)
    cells = np.array(cells_of(number)).reshape(ROWS, COLUMNS)
    rows = np.arange(bottom - top) * ROWS // (bottom - top)
    columns = np.arange(width) * COLUMNS // width
    plane[top:bottom] = np.where(cells[np.ix_(rows, columns)], WHITE, BLACK)
    return plane


def _interlaced_luma(number: int, size: tuple[int, int]) -> np.ndarray:
    """A bright bar moves through the lower third from field to field, the upper field first."""
    plane = luma(number, size)
    width, height = size
    for field in (0, 1):
        left = (number * 2 + field) * 12 % (width - 40)
        plane[height * 3 // 4 + field : height * 9 // 10 : 2, left : left + 40] = WHITE
    return plane


def _frame(number: int, picture: Picture) -> bytes:
    paint = _interlaced_luma if picture.interlaced else luma
    plane = np.rot90(paint(number, picture.size), picture.turned // 90)
    chroma = np.rot90(colours(picture.size), picture.turned // 90, axes=(1, 2))
    return plane.tobytes() + chroma.tobytes()


def colours(size: tuple[int, int]) -> np.ndarray:
    """Both planes: small squares of two colours above the bar code, grey elsewhere."""
    width, height = size[0] // 2, size[1] // 2
    planes = np.full((2, height, width), 128, np.uint8)
    y, x = np.mgrid[: height // 3, :width]
    squares = (x // 4 + y // 4) % 2 == 0
    planes[0, : height // 3] = np.where(squares, 90, 166)
    planes[1, : height // 3] = np.where(squares, 160, 96)
    return planes


def _stored_size(picture: Picture) -> tuple[int, int]:
    width, height = picture.size
    return (height, width) if picture.turned % 180 else (width, height)


def _slot_numbers(clip: Clip, picture: Picture) -> Iterator[int]:
    """The frame in each place of the regular grid; the empty places hold anything."""
    number = 0
    for slot in range(round(clip.seconds * picture.fps)):
        yield number
        if not picture.slots or slot % 10 in picture.slots:
            number += 1


# ---- the sound ----


def sign_delay(second: int) -> float:
    return 0.2 + 0.025 * (second % SIGNS)


def burst(hertz: int, rate: int) -> np.ndarray:
    time = np.arange(round(BURST_SECONDS * rate)) / rate
    return LOUDNESS * np.sin(2 * np.pi * hertz * time)


def samples(seconds: float, rate: int) -> np.ndarray:
    track = np.zeros(round(seconds * rate) + rate)
    for second in range(int(np.ceil(seconds))):
        for start, hertz in ((second, CLICK_HERTZ), (second + sign_delay(second), SIGN_HERTZ)):
            first = round(start * rate)
            sound = burst(hertz, rate)
            track[first : first + len(sound)] = sound
    return track[: round(seconds * rate)]


def _write_wave(path: pathlib.Path, clip: Clip, sound: Sound) -> None:
    mono = np.round(samples(float(clip.length()), sound.rate) * 32767).astype("<i2")
    with wave.open(str(path), "wb") as file:
        file.setnchannels(sound.channels)
        file.setsampwidth(2)
        file.setframerate(sound.rate)
        file.writeframes(np.repeat(mono, sound.channels).tobytes())


# ---- the file ----


@contextlib.contextmanager
def _alone(target: pathlib.Path) -> Iterator[None]:
    """Several processes of one run may want the same clip."""
    FOLDER.mkdir(parents=True, exist_ok=True)
    with (FOLDER / f".{target.name}.lock").open("w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield


def _make(clip: Clip, target: pathlib.Path) -> None:
    with _alone(target), tempfile.TemporaryDirectory(dir=FOLDER) as folder:
        if target.exists():
            return
        part = pathlib.Path(folder) / target.name
        command = ["ffmpeg", "-nostdin", "-v", "error", "-y"]
        if clip.picture:
            command += _picture_input(clip.picture)
        if clip.sound:
            wave_file = part.with_suffix(".source.wav")
            _write_wave(wave_file, clip, clip.sound)
            command += ["-i", str(wave_file)]
        if clip.picture:
            command += _picture_output(clip.picture)
        if clip.sound:
            command += ["-c:a", *clip.sound.codec]
        _feed([*command, *clip.extra, str(part)], clip)
        if clip.picture and clip.picture.turned:
            part = _turned(part, clip.picture.turned)
        part.rename(target)


def _turned(part: pathlib.Path, degrees: int) -> pathlib.Path:
    """The way to turn is written by a copy only, and counted against the clock."""
    result = part.with_name(f"turned-{part.name}")
    copy = ["-i", str(part), "-c", "copy", "-metadata:s:v:0", f"rotate={360 - degrees}"]
    subprocess.run(["ffmpeg", "-nostdin", "-v", "error", *copy, str(result)], check=True)
    return result


def _picture_input(picture: Picture) -> list[str]:
    width, height = _stored_size(picture)
    form = ["-f", "rawvideo", "-pix_fmt", "yuv420p", "-s", f"{width}x{height}"]
    return [*form, "-r", str(picture.fps), "-i", "pipe:0"]


def _picture_output(picture: Picture) -> list[str]:
    aspect = picture.pixel_aspect
    filters = [f"setsar={aspect.numerator}/{aspect.denominator}"]
    if picture.slots:
        kept = "+".join(f"eq(mod(n,10),{slot})" for slot in picture.slots)
        filters.append(f"select='{kept}'")
    if picture.interlaced:
        filters.append("setfield=tff")
    options = ["-vf", ",".join(filters), "-fps_mode", "passthrough" if picture.slots else "cfr"]
    if picture.interlaced:
        options += ["-flags", "+ilme+ildct", "-top", "1"]
    return [*options, "-c:v", *picture.codec]


def _feed(command: list[str], clip: Clip) -> None:
    process = subprocess.Popen(command, stdin=subprocess.PIPE, stderr=subprocess.PIPE)
    assert process.stdin is not None and process.stderr is not None
    try:
        if clip.picture:
            for number in _slot_numbers(clip, clip.picture):
                process.stdin.write(_frame(number, clip.picture))
        process.stdin.close()
    except BrokenPipeError:
        pass
    complaint = process.stderr.read().decode(errors="replace")
    if process.wait() != 0:
        raise RuntimeError(f"{clip.name} could not be made: {complaint}")


def looped(clip: Clip, times: int) -> pathlib.Path:
    """The same clip so often in a row, for work that takes long; the numbers start anew."""
    source = clip.path
    target = source.with_name(f"{source.stem}-x{times}{source.suffix}")
    if not target.exists():
        with _alone(target):
            part = target.with_name(f".part-{target.name}")
            loop = ["-stream_loop", str(times - 1), "-i", str(source), "-c", "copy", str(part)]
            subprocess.run(["ffmpeg", "-nostdin", "-v", "error", "-y", *loop], check=True)
            part.rename(target)
    return target
