#!/usr/bin/env python3
"""Renders the drawings of the skins:  make_skins.py SOURCE_FOLDER TARGET_FOLDER

Every folder of SOURCE_FOLDER that holds drawings is a skin. Its SVG drawings become BMP pictures of
three times their size, its colors.txt becomes nqp_colors.cfg, both in a folder of the same name in
TARGET_FOLDER. Skins there that have no drawings any more are removed.
"""

from __future__ import annotations

import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

SCALE = 3
COMMAND_SECONDS = 60

COLORS_SOURCE = "colors.txt"
COLORS_TARGET = "nqp_colors.cfg"
COLOR_COUNT = 12
RECORD_SIZE = 128
COLOR_LINE = re.compile(r"(\d+)\s+#([0-9A-Fa-f]{6})(?:\s.*)?")

# The pictures of a skin with their width and height at 100 %.
BACKGROUND = "backgrnd"
PICTURES: dict[str, tuple[int, int]] = {
    BACKGROUND: (560, 160),
    "button1": (34, 34),
    "button2": (34, 34),
    "button3": (34, 34),
    "button4": (34, 34),
    "xbutton1": (34, 34),
    "xbutton2": (34, 34),
    "xbutton3": (34, 34),
    "xbutton4": (34, 34),
    "position": (17, 14),
    "volume": (18, 10),
    "options": (20, 20),
    "help": (20, 20),
    "playlist": (20, 20),
    "hideremote": (20, 20),
    "hideall": (20, 20),
    "exit": (20, 20),
    "resize": (12, 12),
}


class SkinError(Exception):
    """Something that the maker of a skin can put right."""


def parse_arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("source", type=pathlib.Path)
    parser.add_argument("target", type=pathlib.Path)
    return parser.parse_args()


def is_source(path: pathlib.Path) -> bool:
    return path.suffix == ".svg" or path.name == COLORS_SOURCE


def skins_of(source: pathlib.Path) -> list[pathlib.Path]:
    if not source.is_dir():
        raise SkinError(f"{source}: there is no such folder")
    skins = {path.parent for path in source.glob("*/*") if is_source(path)}
    if not skins:
        raise SkinError(f"{source}: holds no skin, that is no folder with drawings")
    return sorted(skins)


def write_if_changed(path: pathlib.Path, content: bytes) -> None:
    if path.is_file() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    fresh = path.with_name(path.name + ".new")
    fresh.write_bytes(content)
    fresh.replace(path)


# ---- colours ----


def read_colors(path: pathlib.Path) -> list[int]:
    """The colours in the order of their records, red in the low byte."""
    if not path.is_file():
        raise SkinError(f"{path}: is missing")
    colors: dict[int, int] = {}
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), start=1):
        line = line.strip()
        if not line or line.startswith("#"):
            continue
        found = COLOR_LINE.fullmatch(line)
        if not found:
            raise SkinError(f"{path}:{number}: is not of the form: NUMBER #RRGGBB what it is for")
        record = int(found[1])
        if not 1 <= record <= COLOR_COUNT:
            raise SkinError(f"{path}:{number}: the records go from 1 to {COLOR_COUNT}")
        if record in colors:
            raise SkinError(f"{path}:{number}: record {record} is there twice")
        colors[record] = int.from_bytes(bytes.fromhex(found[2]), "little")
    missing = [str(n) for n in range(1, COLOR_COUNT + 1) if n not in colors]
    if missing:
        raise SkinError(f"{path}: lacks the record {', '.join(missing)}")
    return [colors[n] for n in range(1, COLOR_COUNT + 1)]


def color_records(colors: list[int]) -> bytes:
    content = b""
    for color in colors:
        text = str(color).encode("ascii")
        content += (struct.pack("<H", len(text)) + text).ljust(RECORD_SIZE, b"\0")
    return content


# ---- pictures ----


def find_converter() -> str:
    # Windows has a "convert" of its own that is about disks.
    for name in ("magick",) if os.name == "nt" else ("convert", "magick"):
        found = shutil.which(name)
        if found:
            return found
    raise SkinError("ImageMagick is not installed")


def run(command: list[str], picture: pathlib.Path) -> None:
    environment = {**os.environ, "MAGICK_THREAD_LIMIT": "1"}
    try:
        done = subprocess.run(
            command,
            capture_output=True,
            text=True,
            check=False,
            timeout=COMMAND_SECONDS,
            env=environment,
        )
    except subprocess.TimeoutExpired as late:
        raise SkinError(f"{picture}: {command[0]} took over {late.timeout:g} seconds") from late
    if done.returncode != 0:
        raise SkinError(f"{picture}: {command[0]} failed: {done.stderr.strip()}")


def check_drawing(drawing: pathlib.Path) -> None:
    try:
        root = ET.parse(drawing).getroot()
    except ET.ParseError as error:
        raise SkinError(f"{drawing}: is not a drawing: {error}") from error
    width, height = PICTURES[drawing.stem]
    stated = (root.get("width"), root.get("height"))
    if stated != (str(width), str(height)):
        raise SkinError(f"{drawing}: width and height should be {width} and {height}")


def options_with_alpha(png: pathlib.Path, width: int, height: int) -> list[str]:
    # What is fully transparent takes the colour of what is next to it, or scaling the picture could
    # draw a dark seam around it. Of three layers each shows where the one above has nothing.
    size = f"{width}x{height}!"
    drawn = ["-channel", "A", "-threshold", "0", "+channel"]
    dense = ["-channel", "A", "-threshold", "2%", "+channel"]
    average = ["(", str(png), "-resize", "1x1!", "-alpha", "off", "-resize", size, ")"]
    nearby = ["(", str(png), "-resize", "20%", "-resize", size, *dense, ")"]
    exact = ["(", str(png), *drawn, ")"]
    return [
        *("-background", "none", "-filter", "triangle"),
        *(*average, *nearby, *exact, "-layers", "flatten"),
        *(str(png), "-compose", "copy-opacity", "-composite"),
        *("-type", "TrueColorAlpha"),
    ]


def check_bitmap(drawing: pathlib.Path, content: bytes, opaque: bool) -> None:
    pixels, width, height, bits = struct.unpack_from("<10xI4xii2xH", content)
    wanted = tuple(SCALE * side for side in PICTURES[drawing.stem])
    depth = 24 if opaque else 32
    if content[:2] != b"BM" or (width, abs(height)) != wanted or bits != depth:
        raise SkinError(
            f"{drawing}: came out as {width} x {height} with {bits} bits instead of "
            f"{wanted[0]} x {wanted[1]} with {depth} bits"
        )
    if not opaque and len(set(content[pixels + 3 :: 4])) < 2:
        raise SkinError(f"{drawing}: came out without transparency")


def render(drawing: pathlib.Path, folder: pathlib.Path, converter: str) -> None:
    check_drawing(drawing)
    opaque = drawing.stem == BACKGROUND
    with tempfile.TemporaryDirectory() as temporary:
        png = pathlib.Path(temporary, drawing.stem + ".png")
        bmp = png.with_suffix(".bmp")
        run(["rsvg-convert", "--zoom", str(SCALE), "-o", str(png), str(drawing)], drawing)
        if opaque:
            options = [str(png), "-alpha", "off", "-type", "TrueColor", f"BMP3:{bmp}"]
        else:
            width, height = (SCALE * side for side in PICTURES[drawing.stem])
            options = [*options_with_alpha(png, width, height), f"BMP:{bmp}"]
        run([converter, *options], drawing)
        content = bmp.read_bytes()
    check_bitmap(drawing, content, opaque)
    write_if_changed(folder / bmp.name, content)


def drawings_of(skin: pathlib.Path) -> list[pathlib.Path]:
    drawings = sorted(skin.glob("*.svg"))
    names = {drawing.stem for drawing in drawings}
    problems = [f"{skin / name}.svg: is missing" for name in PICTURES if name not in names]
    problems += [f"{d}: no picture is called that" for d in drawings if d.stem not in PICTURES]
    if problems:
        raise SkinError("\n".join(problems))
    return drawings


# ---- the target folder ----


def remove_stale(target: pathlib.Path, skins: list[pathlib.Path]) -> None:
    """Takes away only what an earlier run could have written."""
    pictures = {f"{name}.bmp" for name in PICTURES}
    kept = {skin.name for skin in skins}
    for folder in sorted(path for path in target.iterdir() if path.is_dir()):
        if folder.name in kept or not (folder / COLORS_TARGET).is_file():
            continue
        for path in folder.iterdir():
            if path.name in pictures or path.name == COLORS_TARGET:
                path.unlink()
        if not any(folder.iterdir()):
            folder.rmdir()


def make_skins(source: pathlib.Path, target: pathlib.Path) -> None:
    if not shutil.which("rsvg-convert"):
        raise SkinError("rsvg-convert is not installed")
    converter = find_converter()
    skins = skins_of(source)
    drawings = [drawing for skin in skins for drawing in drawings_of(skin)]
    colors = {skin.name: color_records(read_colors(skin / COLORS_SOURCE)) for skin in skins}
    with concurrent.futures.ThreadPoolExecutor(max_workers=os.cpu_count() or 1) as pool:
        waiting = [
            pool.submit(render, drawing, target / drawing.parent.name, converter)
            for drawing in drawings
        ]
    problems = [str(error) for error in (job.exception() for job in waiting) if error]
    if problems:
        raise SkinError("\n".join(problems))
    for name, content in colors.items():
        write_if_changed(target / name / COLORS_TARGET, content)
    remove_stale(target, skins)


def main() -> int:
    arguments = parse_arguments()
    try:
        make_skins(arguments.source, arguments.target)
    except (SkinError, OSError) as error:
        print(f"make_skins.py: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
