"""What an output really holds: read with the ffmpeg programs and judged by the marks of the clip.

Times are seconds on the output's own clock, on which its picture and its sound are placed.
"""

from __future__ import annotations

import bisect
import dataclasses
import functools
import json
import pathlib
import re
import struct
import subprocess
from fractions import Fraction

import numpy as np
from marked_clip import (
    BAND,
    BURST_SECONDS,
    CLICK_HERTZ,
    COLUMNS,
    HEIGHT,
    LOUDNESS,
    ROWS,
    SIGN_HERTZ,
    SIGNS,
    WIDTH,
    Clip,
    burst,
    number_of,
    sign_delay,
)

SYNC_SECONDS = 0.005
# A burst that is cut through by the edge of a fragment may be found or not.
EDGE_SECONDS = 0.006
# How far a cell's grey must be from the middle, of 255.
CLEAR = 56
READ_DEADLINE = 120


# ---- facts ----


def probe(path: pathlib.Path) -> dict[str, list[dict[str, str]]]:
    command = ["ffprobe", "-v", "error", "-show_streams", "-show_format", "-of", "json", str(path)]
    done = subprocess.run(command, capture_output=True, text=True, timeout=READ_DEADLINE)
    if done.returncode != 0:
        raise AssertionError(f"{path.name} cannot be opened: {done.stderr.strip()}")
    return json.loads(done.stdout)


def stream_of(path: pathlib.Path, kind: str) -> dict[str, str] | None:
    """The first "video" or "audio" stream."""
    streams = [s for s in probe(path)["streams"] if s["codec_type"] == kind]
    return streams[0] if streams else None


def codecs(path: pathlib.Path) -> list[str]:
    return [stream["codec_name"] for stream in probe(path)["streams"]]


# ---- the picture ----


@dataclasses.dataclass(frozen=True)
class Frames:
    numbers: list[int | None]  # nothing where a bar code cannot be read
    times: list[float]
    rate: Fraction
    size: tuple[int, int]


def _decode(command: list[str]) -> tuple[bytes, str]:
    done = subprocess.run(command, capture_output=True, timeout=READ_DEADLINE)
    complaint = done.stderr.decode(errors="replace")
    if done.returncode != 0:
        raise AssertionError(f"does not decode: {complaint[-500:]}")
    return done.stdout, complaint


def decoded(arguments: list[str]) -> bytes:
    """What the ffmpeg program writes to its output."""
    return _decode(["ffmpeg", "-nostdin", "-v", "error", *arguments])[0]


def _input(path: pathlib.Path) -> list[str]:
    return ["ffmpeg", "-nostdin", "-v", "info", "-copyts", "-i", str(path)]


def _shown_times(log: str, filter_name: str) -> list[float]:
    lines = [line for line in log.splitlines() if filter_name in line]
    found = (re.search(r"\bpts_time:\s*(-?[\d.]+)", line) for line in lines)
    return [float(match[1]) for match in found if match]


def lumas(path: pathlib.Path, size: tuple[int, int]) -> tuple[np.ndarray, list[float]]:
    """All frames as a player shows them, brought to this size, and their times."""
    width, height = size
    filters = f"showinfo,scale={width}:{height}:flags=area,format=gray"
    output = ["-map", "0:v:0", "-vf", filters, "-fps_mode", "passthrough", "-f", "rawvideo", "-"]
    raw, log = _decode([*_input(path), *output])
    frames = np.frombuffer(raw, np.uint8).reshape(-1, height, width)
    return frames, _shown_times(log, "showinfo")[: len(frames)]


def numbers_in(frames: np.ndarray) -> list[int | None]:
    """Of frames of any size, given as (frame, row, column) of grey."""
    _, height, width = frames.shape
    top, bottom = (edge * height / HEIGHT for edge in BAND)
    cell_height, cell_width = (bottom - top) / ROWS, width / COLUMNS
    means = np.empty((len(frames), ROWS * COLUMNS))
    for row in range(ROWS):
        y = round(top + cell_height * (row + 0.3)), round(top + cell_height * (row + 0.7))
        for column in range(COLUMNS):
            x = round(cell_width * (column + 0.3)), round(cell_width * (column + 0.7))
            part = frames[:, y[0] : y[1], x[0] : x[1]]
            means[:, row * COLUMNS + column] = part.mean(axis=(1, 2))
    clear = (np.abs(means - 127.5) > CLEAR).all(axis=1)
    return [
        number_of([bool(cell) for cell in cells > 127.5]) if readable else None
        for cells, readable in zip(means, clear)
    ]


def frames_of(path: pathlib.Path) -> Frames:
    facts = stream_of(path, "video")
    if facts is None:
        raise AssertionError(f"{path.name} holds no picture")
    frames, times = lumas(path, (WIDTH, HEIGHT))
    size = int(facts["width"]), int(facts["height"])
    return Frames(numbers_in(frames), times, Fraction(facts["avg_frame_rate"]), size)


# ---- the sound ----


@dataclasses.dataclass(frozen=True)
class Track:
    clicks: list[float]  # the onsets at whole seconds
    signs: list[float]  # those that tell which second it was
    begin: float
    samples: int  # in one channel
    rate: int
    channels: int

    @property
    def length(self) -> float:
        return self.samples / self.rate


def _onsets(sound: np.ndarray, rate: int) -> list[tuple[float, int]]:
    """Each burst's begin and frequency."""
    hertz_of = (CLICK_HERTZ, SIGN_HERTZ)
    matches = [_likeness(sound, burst(hertz, rate)) for hertz in hertz_of]
    best = np.maximum(matches[0], matches[1])
    loud = np.flatnonzero(best > 0.3)
    found = []
    reach = round(0.02 * rate)
    while loud.size:
        first = loud[0]
        place = first + int(np.argmax(best[first : first + reach]))
        which = int(matches[1][place] > matches[0][place])
        found.append((_between_samples(matches[which], place) / rate, hertz_of[which]))
        loud = loud[loud > place + reach]
    return found


def _likeness(sound: np.ndarray, mark: np.ndarray) -> np.ndarray:
    """1 where the mark begins at its own loudness."""
    size = 1 << int(len(sound) + len(mark)).bit_length()
    product = np.fft.rfft(sound, size) * np.conj(np.fft.rfft(mark, size))
    return np.fft.irfft(product, size)[: len(sound)] / np.dot(mark, mark)


def _between_samples(values: np.ndarray, place: int) -> float:
    """The top of the parabola through a value and its neighbours."""
    if not 0 < place < len(values) - 1:
        return float(place)
    before, here, after = values[place - 1 : place + 2]
    bend = before - 2 * here + after
    return place + float(0.5 * (before - after) / bend) if bend else float(place)


def track_of(path: pathlib.Path) -> Track:
    """The first sound stream as its decoder gives it. An AVI has no place for an encoder's delay,
    so there the delay is heard, as in a player."""
    facts = stream_of(path, "audio")
    if facts is None:
        raise AssertionError(f"{path.name} holds no sound")
    output = ["-map", "0:a:0", "-af", "ashowinfo", "-c:a", "pcm_f32le", "-f", "f32le", "-"]
    raw, log = _decode([*_input(path), *output])
    channels, rate = int(facts["channels"]), int(facts["sample_rate"])
    sound = np.frombuffer(raw, "<f4").reshape(-1, channels)
    times = _shown_times(log, "ashowinfo")
    begin = times[0] if times else 0.0
    # The first channel: with six it is the left one, which all bursts are on.
    onsets = _onsets(sound[:, 0].astype(float), rate)
    clicks = [begin + at for at, hertz in onsets if hertz == CLICK_HERTZ]
    signs = [begin + at for at, hertz in onsets if hertz == SIGN_HERTZ]
    return Track(clicks, signs, begin, len(sound), rate, channels)


def second_of(click: float, signs: list[float]) -> int | None:
    """Which second of the source the click is from, of each twenty; nothing without its sign."""
    for sign in signs:
        place = (sign - click - sign_delay(0)) / (sign_delay(1) - sign_delay(0))
        if -0.4 < place < SIGNS - 0.6:
            return round(place)
    return None


# ---- judging a fragment ----


@dataclasses.dataclass(frozen=True)
class Source:
    """How the source itself is, in seconds from its beginning. Its own sound may be late, or hold
    less than its picture, which a cut must keep."""

    times: list[float]  # of each frame
    end: float  # of the last frame, or of the sound where there is none
    clicks: dict[int, float]  # by the second that they mark
    sound_end: float


def _beginning(clip: Clip, begin: float) -> float:
    """Broadcast streams count from anywhere, so their first picture is where they begin; the first
    frame of an MP3 file only tells about the others. All else counts from 0."""
    return begin if clip.name.endswith((".ts", ".mpg", ".mp3")) else 0.0


@functools.lru_cache(maxsize=None)
def source_of(clip: Clip) -> Source:
    if clip.picture is None:
        track = track_of(clip.path)
        zero = _beginning(clip, track.begin)
        return Source([], float(clip.length()), _clicks(clip, track, zero), track.length)
    frames = frames_of(clip.path)
    if frames.numbers != list(range(len(clip.frame_times()))):
        raise AssertionError(f"{clip.name} was not made right: {frames.numbers}")
    zero = _beginning(clip, frames.times[0])
    times = [time - zero for time in frames.times]
    end = times[-1] + float(clip.length() - clip.frame_times()[-1])
    if not clip.sound:
        return Source(times, end, {}, 0.0)
    track = track_of(clip.path)
    clicks = _clicks(clip, track, zero)
    return Source(times, end, clicks, track.begin + track.length - zero)


def _clicks(clip: Clip, track: Track, zero: float) -> dict[int, float]:
    found = {round(click - zero): click - zero for click in track.clicks}
    lags = [at - second for second, at in found.items()]
    # The very first click may be lost to the way in of a codec.
    if len(found) < int(clip.seconds) - 1 or max(lags) - min(lags) > 0.002:
        raise AssertionError(f"{clip.name} has no steady clicks: {found}")
    return found


@dataclasses.dataclass(frozen=True)
class Wanted:
    """The frames that a fragment holds, by the times of its source."""

    first: int
    last: int
    begin: float  # the first frame's own time
    end: float  # of the last frame


TIME_GRAIN = 0.0006  # containers that count in milliseconds


def wanted(clip: Clip, begin: float, end: float) -> Wanted:
    source = source_of(clip)
    times = [*source.times, source.end]
    shown = [n for n, time in enumerate(source.times) if time <= begin + TIME_GRAIN]
    first = shown[-1] if shown else 0
    last = max(n for n, time in enumerate(source.times) if time < end - TIME_GRAIN)
    return Wanted(first, last, times[first], times[last + 1])


def _described(numbers: list[int | None]) -> str:
    return " ".join("?" if n is None else str(n) for n in numbers[:12])


def frame_differences(numbers: list[int | None], expected: list[int]) -> list[str]:
    """In words, what is other than it should be; nothing when the frames are exactly these."""
    if numbers == expected:
        return []
    if None in numbers:
        return [f"{numbers.count(None)} frames unreadable: {_described(numbers)}"]
    if not numbers:
        return ["no frame"]
    seen = [n for n in numbers if n is not None]
    found = []
    start, stop = seen[0] - expected[0], seen[-1] - expected[-1]
    if start:
        found.append(_plural(start, "late", "early"))
    if stop != start:
        found.append("ends " + (_plural(stop, "late", "early") if stop else "right"))
    doubled = sum(a == b for a, b in zip(seen, seen[1:]))
    doubled -= sum(a == b for a, b in zip(expected, expected[1:]))
    if doubled > 0:
        found.append(f"{doubled} doubled")
    missing = [n for n in expected if seen[0] < n < seen[-1] and n not in seen]
    if missing:
        found.append(f"{len(missing)} missing ({_described(list(missing))})")
    return found or [f"frames {_described(numbers)}, not {_described(list(expected))}"]


def _plural(count: int, above: str, below: str) -> str:
    return f"{abs(count)} frame{'s' if abs(count) != 1 else ''} {above if count > 0 else below}"


def click_differences(
    track: Track, source: Source, begin: float, end: float, zero: float
) -> list[str]:
    """Each second of the source in [begin, end) must click where the source's clock says; the
    output's time `zero` is the source's `begin`."""
    expected, doubtful = _expected_clicks(source, begin, min(end, source.sound_end))
    clicks = [click - zero for click in track.clicks]
    found = []
    for second, at in expected.items():
        near = min(clicks, key=lambda click: abs(click - at), default=None)
        if near is None or abs(near - at) > 0.2:
            found.append(f"click {second} missing")
            continue
        if abs(near - at) > SYNC_SECONDS:
            found.append(f"clicks {(near - at) * 1000:+.0f} ms")
        said = second_of(near + zero, track.signs)
        if said is not None and said != second % SIGNS:
            found.append(f"click {said} instead of {second}")
    places = [*expected.values(), *doubtful]
    strange = [c for c in clicks if all(abs(c - place) > 0.2 for place in places)]
    found += [f"a click at {click:.3f}" for click in strange]
    return list(dict.fromkeys(found))


def _expected_clicks(
    source: Source, begin: float, end: float
) -> tuple[dict[int, float], list[float]]:
    expected, doubtful = {}, []
    for second, at in source.clicks.items():
        if begin + 0.0005 <= at <= end - EDGE_SECONDS:
            expected[second] = at - begin
        elif begin - EDGE_SECONDS <= at <= end:
            doubtful.append(at - begin)
    return expected, doubtful


def length_differences(
    track: Track, source: Source, begin: float, end: float, zero: float, surplus: float = 0.0
) -> list[str]:
    """Of the sound, from the first frame on. Where the source's own sound ends before its picture,
    silence may follow, or nothing."""
    length = track.begin - zero + track.length
    shortest = min(end, source.sound_end) - begin - SYNC_SECONDS
    longest = end - begin + SYNC_SECONDS + surplus
    if shortest <= length <= longest:
        return []
    return [f"sound {(length - (end - begin)) * 1000:+.0f} ms long"]


def video_differences(output: pathlib.Path, clip: Clip, begin: float, end: float) -> list[str]:
    """Of a video fragment that keeps every frame of a source with a steady rate."""
    want = wanted(clip, begin, end)
    try:
        frames = frames_of(output)
        found = frame_differences(frames.numbers, _shown_each_time(clip, want))
        found += _pace_differences(frames, clip, want)
        facts = stream_of(output, "audio")
        if (facts is not None) != (clip.sound is not None):
            return [*found, "sound lost" if clip.sound else "sound from nowhere"]
        if clip.sound:
            found += sync_differences(output, clip, want, frames.times[0])
    except AssertionError as error:
        return [str(error)]
    return found


def _shown_each_time(clip: Clip, want: Wanted) -> list[int]:
    """What is seen of the source at each place of the steady rate. A source may hold a frame for
    longer than one place."""
    assert clip.picture is not None
    rate = float(clip.picture.fps)
    times = source_of(clip).times
    places = round((want.end - want.begin) * rate)
    middles = (want.begin + (place + 0.5) / rate for place in range(places))
    return [bisect.bisect_right(times, middle) - 1 for middle in middles]


def _pace_differences(frames: Frames, clip: Clip, want: Wanted) -> list[str]:
    source = source_of(clip)
    before: int | None = None
    for number, time in zip(frames.numbers, frames.times):
        if number is None or number >= len(source.times) or number == before:
            continue
        before = number
        late = (time - frames.times[0]) - (source.times[number] - want.begin)
        if abs(late) > SYNC_SECONDS:
            return [f"frame {number} shown {late * 1000:+.0f} ms"]
    return []


def sync_differences(output: pathlib.Path, clip: Clip, want: Wanted, zero: float) -> list[str]:
    track, source = track_of(output), source_of(clip)
    found = click_differences(track, source, want.begin, want.end, zero)
    # MP3 is written in whole frames: the last one may reach beyond the picture.
    surplus = 2 * 1152 / track.rate if codecs(output)[-1] == "mp3" else 0.0
    return found + length_differences(track, source, want.begin, want.end, zero, surplus)


def assert_exact(output: pathlib.Path, clip: Clip, begin: float, end: float) -> None:
    found = video_differences(output, clip, begin, end)
    assert not found, f"{output.name} of {clip.name} from {begin} to {end}: {', '.join(found)}"


def sound_differences(output: pathlib.Path, clip: Clip, begin: float, end: float) -> list[str]:
    """Of a fragment of sound alone."""
    try:
        if stream_of(output, "video") is not None:
            return ["holds a picture"]
        want = sound_bounds(clip, begin, end)
        track = track_of(output)
        found = click_differences(track, source_of(clip), *want, track.begin)
        found += length_differences(track, source_of(clip), *want, track.begin)
        if output.suffix == ".mp3":
            found += mp3_differences(output)
    except AssertionError as error:
        return [str(error)]
    return found


def sound_bounds(clip: Clip, begin: float, end: float) -> tuple[float, float]:
    """Sound alone is cut at the sample, not at the frame."""
    source = source_of(clip)
    return begin, min(end, max(source.end, source.sound_end))


# ---- MP3 files ----


@dataclasses.dataclass(frozen=True)
class Mp3Header:
    rate: int
    frames: int
    delay: int
    padding: int

    @property
    def samples(self) -> int:
        return self.frames * (1152 if self.rate >= 32000 else 576) - self.delay - self.padding


MP3_RATES = {3: (44100, 48000, 32000), 2: (22050, 24000, 16000), 0: (11025, 12000, 8000)}


def mp3_header(path: pathlib.Path) -> Mp3Header:
    """Of the first frame, which holds no sound but says how much there is."""
    data = path.read_bytes()
    start = 0
    if data[:3] == b"ID3":
        start = 10 + functools.reduce(lambda size, byte: size << 7 | byte, data[6:10], 0)
    assert data[start] == 0xFF and data[start + 1] & 0xE0 == 0xE0, "no frame of MP3 at the begin"
    version = data[start + 1] >> 3 & 3
    rate = MP3_RATES[version][data[start + 2] >> 2 & 3]
    mono = data[start + 3] >> 6 == 3
    side = {(True, False): 32, (True, True): 17, (False, False): 17, (False, True): 9}
    tag = start + 4 + side[(version == 3, mono)]
    assert data[tag : tag + 4] in (b"Xing", b"Info"), "no Xing header"
    flags, frames = struct.unpack_from(">II", data, tag + 4)
    assert flags & 1, "the Xing header does not count the frames"
    place = tag + 8 + sum(size for bit, size in ((1, 4), (2, 4), (4, 100), (8, 4)) if flags & bit)
    packed = int.from_bytes(data[place + 21 : place + 24], "big")
    return Mp3Header(rate, frames, packed >> 12, packed & 0xFFF)


def mp3_differences(path: pathlib.Path) -> list[str]:
    header, track = mp3_header(path), track_of(path)
    found = []
    if header.delay == 0:
        found.append("the delay is not told")
    if header.samples != track.samples:
        found.append(f"{track.samples} samples decoded, {header.samples} told")
    return found


# ---- stills ----


@dataclasses.dataclass(frozen=True)
class Still:
    bits: int
    size: tuple[int, int]
    number: int | None


def still_of(path: pathlib.Path) -> Still:
    from PIL import Image

    data = path.read_bytes()
    assert data[:2] == b"BM", "is no BMP"
    assert struct.unpack_from("<I", data, 2)[0] == len(data), "its header tells another length"
    width, height, _, bits = struct.unpack_from("<iiHH", data, 18)
    with Image.open(path) as image:
        gray = np.asarray(image.convert("L"))
    return Still(bits, (width, abs(height)), numbers_in(gray[np.newaxis])[0])


def display_size(picture_size: tuple[int, int], pixel_aspect: Fraction) -> tuple[int, int]:
    """With square pixels, as wide as it is shown."""
    width, height = picture_size
    return round(width * pixel_aspect), height


def still_differences(output: pathlib.Path, clip: Clip, begin: float) -> list[str]:
    assert clip.picture is not None
    try:
        still = still_of(output)
    except AssertionError as error:
        return [str(error)]
    want = wanted(clip, begin, begin + 1000).first
    found = [] if still.bits == 24 else [f"{still.bits} bits a pixel"]
    size = display_size(clip.picture.size, clip.picture.pixel_aspect)
    if still.size != size:
        found.append(f"{still.size[0]}x{still.size[1]}, not {size[0]}x{size[1]}")
    return found + frame_differences([still.number], [want])
