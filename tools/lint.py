#!/usr/bin/env python3
"""Checks of the source text:  lint.py [RESULTS.xml]

Each check is one test; its findings are printed as FILE:LINE: TEXT.
"""

from __future__ import annotations

import ast
import pathlib
import re
import subprocess
import sys
from collections.abc import Callable, Iterator

import junit

ROOT = pathlib.Path(__file__).resolve().parent.parent
SRC = ROOT / "src"
COMPANION = ROOT / "companion"
CXX = (".h", ".cpp")

# Which layers a layer may include from; "app", and the companion's own folder, put everything
# together.
WINDOWS_OF = {"base", "core", "forms"}
MAY_INCLUDE: dict[str, set[str]] = {
    "base": set(),
    "core": {"base"},
    "forms": {"base"},
    "forms/win32/winapi": {"base"},
    "forms/win32": {"base", "forms", "forms/win32/winapi"},
    "platform": {"base", "core", "forms", "forms/win32/winapi"},
    "video": WINDOWS_OF,
    "playlist": {"base"},
    "fragments": {"base", "core"},
    "remote": WINDOWS_OF | {"playlist", "fragments"},
    "options": WINDOWS_OF,
    "wizard": WINDOWS_OF,
    "companion/cutter": {"base", "core"},
    "companion/command": {"base", "core", "companion/cutter"},
    "companion/dialog": {"base", "forms", "companion/cutter"},
    "companion/server": {"base", "core", "companion/cutter", "companion/dialog"},
    "companion/server/win32": WINDOWS_OF
    | {"forms/win32", "forms/win32/winapi", "platform", "companion/dialog", "companion/server"},
}
WINDOWS_HEADER_PLACES = (
    "src/forms/win32/",
    "src/platform/",
    "src/app/",
    "companion/server/win32/",
    "companion/cutter/file_handle_win32.cpp",
    "companion/main.cpp",
    "companion/windows_console.cpp",
    "companion/windows_console.h",
    "tests/",
)

INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]')
BINDING = re.compile(
    r"(?:(\w+)(?:\(\))?(?:\[[^\]]*\])?\s*(?:\.|->)\s*)?(\w+)\s*\.\s*calls<\s*&\s*[\w:]+::(\w+)\s*>"
)
WINDOWS_HEADERS = re.compile(
    r"^(windows|windowsx|winuser|commctrl|shellapi|shlobj|objbase|ole2|dshow|wingdi)\.h$", re.I
)
# Spelled so that this file does not find itself.
MACHINE_TEXT = re.compile(
    r"(?<![\w./-])/(?:root|home)(?=/|\b)"
    r"|\b(?:deb|security)[.]debian[.]org\b|\bregistry[.]npm\w+|\bpypi[.]org\b"
)


def project_files() -> list[pathlib.Path]:
    listing = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=ROOT,
        check=True,
        capture_output=True,
        text=True,
    ).stdout
    paths = [ROOT / name for name in sorted(set(listing.split("\0"))) if name]
    return [path for path in paths if path.is_file()]


def relative(path: pathlib.Path) -> str:
    return path.relative_to(ROOT).as_posix()


def lines_of(path: pathlib.Path) -> Iterator[tuple[int, str]]:
    text = path.read_bytes().decode("utf-8", errors="replace")
    yield from enumerate(text.splitlines(), start=1)


def is_text(path: pathlib.Path) -> bool:
    return b"\0" not in path.read_bytes()[:4096]


def sources(files: list[pathlib.Path]) -> list[pathlib.Path]:
    return [path for path in files if path.suffix in CXX]


def is_shell(path: pathlib.Path) -> bool:
    first = path.read_bytes()[:64].split(b"\n")[0]
    return first.startswith(b"#!") and b"sh" in first.rsplit(b"/", 1)[-1]


def run_tool(command: list[str], paths: list[pathlib.Path]) -> list[str]:
    if not paths:
        return []
    done = subprocess.run(
        [*command, *map(relative, paths)], cwd=ROOT, capture_output=True, text=True, check=False
    )
    if done.returncode == 0:
        return []
    output = (done.stdout + done.stderr).splitlines()
    findings = [line for line in output if re.match(r"\S+:\d+", line)]
    return findings or [f"{command[0]} ended with {done.returncode}: {done.stderr.strip()}"]


# ---- the checks ----


def cxx_is_formatted(files: list[pathlib.Path]) -> list[str]:
    places = run_tool(["clang-format", "--style=file", "--dry-run", "-Werror"], sources(files))
    first: dict[str, str] = {}
    for place in places:
        first.setdefault(place.split(":")[0], place.split(": ")[0])
    return [f"{place}: is not as clang-format -i writes it" for place in first.values()]


def shell_scripts_are_sound(files: list[pathlib.Path]) -> list[str]:
    scripts = [path for path in files if not path.suffix == ".py" and is_shell(path)]
    return run_tool(["shellcheck", "-S", "warning", "-e", "SC2046", "-f", "gcc"], scripts)


def python_is_typed(files: list[pathlib.Path]) -> list[str]:
    findings = []
    for path in files:
        if path.suffix != ".py":
            continue
        for node in ast.walk(ast.parse(path.read_text())):
            if not isinstance(node, ast.FunctionDef):
                continue
            plain = [a.arg for a in node.args.args if a.annotation is None and a.arg != "self"]
            if plain or node.returns is None:
                findings.append(f"{relative(path)}:{node.lineno}: {node.name} is not typed")
    return findings


def windows_header_stays_in_its_places(files: list[pathlib.Path]) -> list[str]:
    findings = []
    for path in sources(files):
        if relative(path).startswith(WINDOWS_HEADER_PLACES):
            continue
        for number, line in lines_of(path):
            found = INCLUDE.match(line)
            if found and WINDOWS_HEADERS.match(found[2]):
                findings.append(f"{relative(path)}:{number}: includes <{found[2]}>")
    return findings


def own_includes(path: pathlib.Path) -> Iterator[tuple[int, pathlib.Path]]:
    for number, line in lines_of(path):
        found = INCLUDE.match(line)
        if not found or found[1] != '"':
            continue
        for base in (SRC, COMPANION, path.parent):
            target = (base / found[2]).resolve()
            if target.is_file() and is_shipped(target):
                yield number, target
                break


def is_shipped(path: pathlib.Path) -> bool:
    return path.is_relative_to(SRC) or path.is_relative_to(COMPANION)


def layer_of(path: pathlib.Path) -> str:
    """The longest one that the path begins with; else the folder at the top."""
    inner = path.relative_to(SRC if path.is_relative_to(SRC) else ROOT).as_posix()
    named = [layer for layer in MAY_INCLUDE if inner.startswith(layer + "/")]
    return max(named, key=len, default=inner.split("/")[0])


def shipped(files: list[pathlib.Path]) -> list[pathlib.Path]:
    return [path for path in sources(files) if is_shipped(path)]


def layers_are_kept(files: list[pathlib.Path]) -> list[str]:
    findings = []
    for path in shipped(files):
        here = layer_of(path)
        if here in ("app", "companion"):
            continue
        if here not in MAY_INCLUDE:
            findings.append(f"{relative(path)}:1: {here} has no place in the layers")
            continue
        for number, target in own_includes(path):
            there = layer_of(target)
            if there != here and there not in MAY_INCLUDE[here]:
                findings.append(
                    f"{relative(path)}:{number}: {here} may not include {relative(target)}"
                )
    return findings


def includes_have_no_cycles(files: list[pathlib.Path]) -> list[str]:
    graph = {path: [target for _, target in own_includes(path)] for path in shipped(files)}
    done: set[pathlib.Path] = set()
    findings: list[str] = []

    def walk(path: pathlib.Path, trail: list[pathlib.Path]) -> None:
        if path in trail:
            loop = trail[trail.index(path) :] + [path]
            findings.append(f"{relative(path)}:1: cycle " + " -> ".join(map(relative, loop)))
            return
        if path in done:
            return
        for target in graph.get(path, []):
            walk(target, [*trail, path])
        done.add(path)

    for start in graph:
        walk(start, [])
    return findings


def handlers_are_named_by_their_event(files: list[pathlib.Path]) -> list[str]:
    findings = []
    for path in shipped(files):
        text = path.read_bytes().decode("utf-8", errors="replace")
        for found in BINDING.finditer(text):
            control, event, handler = found.groups()
            if control in (None, "this"):
                control = "Form"
            wanted = f"{control.rstrip('_')}_{event}"
            if handler != wanted:
                number = text.count("\n", 0, found.start()) + 1
                findings.append(f"{relative(path)}:{number}: {handler} should be {wanted}")
    return findings


def matching_lines(files: list[pathlib.Path], pattern: re.Pattern[str]) -> list[str]:
    findings = []
    for path in files:
        if not is_text(path):
            continue
        for number, line in lines_of(path):
            if pattern.search(line):
                findings.append(f"{relative(path)}:{number}: {line.strip()[:100]}")
    return findings


def no_path_of_one_machine(files: list[pathlib.Path]) -> list[str]:
    return matching_lines(files, MACHINE_TEXT)


CHECKS: list[Callable[[list[pathlib.Path]], list[str]]] = [
    cxx_is_formatted,
    shell_scripts_are_sound,
    python_is_typed,
    windows_header_stays_in_its_places,
    layers_are_kept,
    includes_have_no_cycles,
    handlers_are_named_by_their_event,
    no_path_of_one_machine,
]


def main() -> int:
    files = project_files()
    cases = []
    for check in CHECKS:
        findings = check(files)
        for finding in findings:
            print(finding)
        cases.append(junit.Case(check.__name__, "\n".join(findings) if findings else None))
    if len(sys.argv) > 1:
        junit.write(pathlib.Path(sys.argv[1]), "lint", cases)
    return 1 if any(case.failure for case in cases) else 0


if __name__ == "__main__":
    sys.exit(main())
