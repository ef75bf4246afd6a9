"""Pictures that are laid over a fragment, and the proof of where they lie."""

from __future__ import annotations

import pathlib
import struct

import evidence
import numpy as np

Size = tuple[int, int]

# What red, green and blue add to the luma, in small clips and in those of high definition.
REC_601 = np.array([0.299, 0.587, 0.114])
REC_709 = np.array([0.2126, 0.7152, 0.0722])


def painted(size: Size) -> np.ndarray:
    """Red, green, blue and alpha of every pixel: no row and no column is like its neighbour, and
    all differ much from the clips' grey. The alpha has a hole and a half-transparent part."""
    width, height = size
    pixels = np.zeros((height, width, 4), np.uint8)
    y, x = np.mgrid[:height, :width]
    bright = (x // 4 + y // 4) % 2 == 0
    pixels[..., 0] = np.where(bright, 255, 40 - x % 4 * 10)
    pixels[..., 1] = np.where(bright, 220 + y % 4 * 10, 0)
    pixels[..., 2] = np.where(bright, 200, y * 60 // height)
    pixels[..., 3] = 255
    pixels[height // 3 : height * 2 // 3, width // 4 : width // 2, 3] = 0
    pixels[height // 3 : height * 2 // 3, width // 2 : width * 3 // 4, 3] = 128
    return pixels


def opaque(size: Size) -> np.ndarray:
    pixels = painted(size)
    pixels[..., 3] = 255
    return pixels


def plain(size: Size) -> np.ndarray:
    """One strong colour."""
    pixels = np.empty((size[1], size[0], 4), np.uint8)
    pixels[:] = (230, 40, 20, 255)
    return pixels


def write_bmp(path: pathlib.Path, pixels: np.ndarray, bits: int) -> pathlib.Path:
    """With 24 bits the alpha is left out; with 32 the header says where it is."""
    height, width, _ = pixels.shape
    rows = pixels[::-1, :, [2, 1, 0, 3][: bits // 8]]
    gap = b"\0" * (-width * bits // 8 % 4)
    body = b"".join(row.tobytes() + gap for row in rows)
    if bits == 32:
        masks = struct.pack("<4I", 0xFF0000, 0xFF00, 0xFF, 0xFF000000)
        tail = masks + b"BGRs" + bytes(48)
        kind = 3
    else:
        tail, kind = b"", 0
    length = 40 + len(tail)
    info = struct.pack("<IiiHHIIiiII", length, width, height, 1, bits, kind, len(body), 0, 0, 0, 0)
    start = 14 + length
    head = struct.pack("<2sIHHI", b"BM", start + len(body), 0, 0, start)
    path.write_bytes(head + info + tail + body)
    return path


def place(per_mille: tuple[int, int], room: Size, size: Size) -> tuple[int, int]:
    """Halves are rounded up."""
    x, y = ((2 * p * (r - s) + 1000) // 2000 for p, r, s in zip(per_mille, room, size))
    return x, y


def expected_luma(
    pixels: np.ndarray, behind: np.ndarray, weights: np.ndarray = REC_601
) -> np.ndarray:
    """In the range from 16 to 235."""
    over = 16 + pixels[..., :3] @ weights * 219 / 255
    alpha = pixels[..., 3] / 255
    return over * alpha + behind * (1 - alpha)


Planes = tuple[np.ndarray, np.ndarray]


def planes_of(path: pathlib.Path, size: Size) -> Planes:
    """The frames' own luma and, half as wide and high, both chromas: (frame, row, column) and
    (frame, plane, row, column)."""
    width, height = size
    output = ["-map", "0:v:0", "-pix_fmt", "yuv420p", "-fps_mode", "passthrough"]
    raw = evidence.decoded(["-i", str(path), *output, "-f", "rawvideo", "-"])
    frames = np.frombuffer(raw, np.uint8).reshape(-1, width * height * 3 // 2)
    luma = frames[:, : width * height].reshape(-1, height, width)
    chroma = frames[:, width * height :].reshape(-1, 2, height // 2, width // 2)
    return luma, chroma


def limited_lumas(path: pathlib.Path, size: Size) -> np.ndarray:
    return planes_of(path, size)[0]


def _outside(shape: tuple[int, ...], at: Size, size: Size, unit: int) -> np.ndarray:
    """Which pixels of a plane, each of them `unit` wide, the picture does not touch."""
    mask = np.ones(shape, bool)
    (x, y), (width, height) = at, size
    mask[y // unit : -(-(y + height) // unit), x // unit : -(-(x + width) // unit)] = False
    return mask


def _worst_outside(plain: np.ndarray, covered: np.ndarray, outside: np.ndarray) -> int:
    return int(np.abs(covered.astype(int) - plain.astype(int))[..., outside].max(initial=0))


def differences(
    plain: Planes,
    covered: Planes,
    pixels: np.ndarray,
    at: Size,
    noise: float,
    weights: np.ndarray = REC_601,
    outside: float = 0,
) -> list[str]:
    """Of a clip with the picture to the same one without it. `noise` is what rounding and
    compression may change in the picture, and `outside` around it, in steps of luma."""
    if len(plain[0]) != len(covered[0]):
        return [f"{len(covered[0])} frames, {len(plain[0])} without the picture"]
    height, width, _ = pixels.shape
    found = []
    for name, before, after, unit in zip(("luma", "chroma"), plain, covered, (1, 2)):
        around = _outside(before.shape[-2:], at, (width, height), unit)
        worst = _worst_outside(before, after, around)
        if worst > outside:
            found.append(f"{name} changed by {worst} outside the picture")
    x, y = at
    for number, (before, after) in enumerate(zip(plain[0], covered[0])):
        behind = before[y : y + height, x : x + width]
        wanted = expected_luma(pixels, behind.astype(float), weights)
        off = np.abs(after[y : y + height, x : x + width] - wanted)
        if np.median(off) > noise or off.max() > 4 * noise:
            where = _shift(wanted, after, at)
            return [*found, f"the picture is off by {off.max():.0f} in frame {number}{where}"]
    return found


def _shift(wanted: np.ndarray, frame: np.ndarray, at: tuple[int, int]) -> str:
    """Where the picture lies better than where it should, in words."""
    height, width = wanted.shape
    best, where = np.inf, at
    for y in range(max(0, at[1] - 4), min(frame.shape[0] - height, at[1] + 4) + 1):
        for x in range(max(0, at[0] - 4), min(frame.shape[1] - width, at[0] + 4) + 1):
            error = np.abs(frame[y : y + height, x : x + width] - wanted).mean()
            if error < best:
                best, where = error, (x, y)
    return "" if where == at else f", it lies at {where} instead of {at}"


def misplacements(frames: np.ndarray, pixels: np.ndarray, at: tuple[int, int]) -> list[str]:
    """Of an opaque picture in compressed frames: the place where it lies best is the right one."""
    height, width, _ = pixels.shape
    wanted = expected_luma(pixels, np.zeros((height, width)))
    for number, frame in enumerate(frames):
        seen = frame[at[1] : at[1] + height, at[0] : at[0] + width]
        if np.abs(seen - wanted).mean() > 30:
            return [f"the picture is not in frame {number}{_shift(wanted, frame, at)}"]
        moved = _shift(wanted, frame, at)
        if moved:
            return [f"frame {number}{moved}"]
    return []
