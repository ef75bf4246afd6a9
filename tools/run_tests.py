#!/usr/bin/env python3
"""Runs GoogleTest programs and leaves their results as XML.

    run_tests.py LIST RESULTS [--wine] [--only TEXT] [--share I/N]

LIST names the programs, one a line. A program first says which tests it has; a test that is
missing from its results afterwards, because the program crashed or took too long, has failed.
"""

from __future__ import annotations

import argparse
import os
import pathlib
import signal
import subprocess
import sys
import xml.etree.ElementTree as ET

import junit

LIST_SECONDS = 60


Share = tuple[int, int]


def share(text: str) -> Share:
    index, count = map(int, text.split("/"))
    return index - 1, count


def parse_arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("list", type=pathlib.Path)
    parser.add_argument("results", type=pathlib.Path)
    parser.add_argument("--wine", action="store_true", help="the programs are for Windows")
    parser.add_argument("--only", default="", help="run the programs whose name holds this text")
    parser.add_argument("--share", type=share, default=(0, 1), help="every Nth test, from the Ith")
    parser.add_argument("--seconds", type=float, default=300, help="deadline for each program")
    return parser.parse_args()


def programs(list_file: pathlib.Path) -> list[pathlib.Path]:
    lines = [line.strip() for line in list_file.read_text().splitlines()]
    return [(list_file.parent / line).resolve() for line in lines if line]


def tier_of(program: pathlib.Path, wine: bool) -> str:
    if wine:
        return "wine"
    return "forms" if "form" in program.stem else "unit"


def windows_path(path: pathlib.Path) -> str:
    return "Z:" + str(path).replace("/", "\\")


def end_group(process: subprocess.Popen[bytes], wine: bool) -> None:
    os.killpg(process.pid, signal.SIGKILL)
    if wine:
        # The prefix belongs to this run alone, so whatever still runs in it was started here.
        subprocess.run(["wineserver", "-k"], check=False, timeout=30)
    process.wait()


def run(command: list[str], log: pathlib.Path, seconds: float, wine: bool) -> str | None:
    """None for a clean end, otherwise what went wrong. Output goes to a file: a process that is
    left behind would hold a pipe open."""
    with log.open("wb") as output:
        process = subprocess.Popen(
            command,
            stdin=subprocess.DEVNULL,
            stdout=output,
            stderr=subprocess.STDOUT,
            cwd=log.parent,
            start_new_session=True,
        )
        try:
            code = process.wait(timeout=seconds)
        except subprocess.TimeoutExpired:
            end_group(process, wine)
            return f"it was ended after {seconds:.0f} seconds"
    return None if code == 0 else f"it ended with code {code}"


def listed_tests(text: str) -> list[str]:
    names: list[str] = []
    suite = ""
    for line in text.splitlines():
        word = line.split("#")[0].rstrip()
        if word.startswith("  "):
            names.append(suite + word.strip())
        elif word.endswith(".") and " " not in word:
            suite = word
    return names


def is_enabled(name: str) -> bool:
    return "DISABLED_" not in name


def reported_tests(xml: pathlib.Path) -> list[junit.Case]:
    try:
        return junit.read(xml)
    except (OSError, ET.ParseError):
        return []


def last_lines(log: pathlib.Path, count: int = 12) -> str:
    return "\n".join(log.read_text(errors="replace").splitlines()[-count:])


def run_program(
    program: pathlib.Path, folder: pathlib.Path, wine: bool, seconds: float, part: Share
) -> bool:
    folder.mkdir(parents=True, exist_ok=True)
    launcher = ["wine", str(program)] if wine else [str(program)]
    stem = program.stem if part[1] == 1 else f"{program.stem}-{part[0] + 1}"
    xml = folder / f"{stem}.xml"
    extra = folder / f"{stem}.program.xml"
    log = folder / f"{stem}.log"
    names_file = folder / f"{stem}.tests"

    trouble = run([*launcher, "--gtest_list_tests"], names_file, LIST_SECONDS, wine)
    names = [n for n in listed_tests(names_file.read_text(errors="replace")) if is_enabled(n)]
    if not names:
        reason = f"{program.name} names no tests; {trouble or 'its list is empty'}"
        junit.write(extra, program.stem, [junit.Case("has tests", reason)])
        return False

    names = names[part[0] :: part[1]]
    chosen = [] if part[1] == 1 else [f"--gtest_filter={':'.join(names)}"]
    target = windows_path(xml) if wine else str(xml)
    trouble = run([*launcher, f"--gtest_output=xml:{target}", *chosen], log, seconds, wine)
    reported = reported_tests(xml)
    seen = {case.name for case in reported}
    reason = f"{program.name} left no result for it; {trouble}\n{last_lines(log)}"
    cases = [junit.Case(name, reason) for name in names if name not in seen]
    failed = [case for case in reported if case.failure is not None]
    if trouble and not cases and not failed:
        cases = [junit.Case("ends cleanly", f"{trouble}\n{last_lines(log)}")]
    if cases:
        junit.write(extra, program.stem, cases)
    return not cases and not failed


def main() -> int:
    arguments = parse_arguments()
    good = True
    for program in programs(arguments.list):
        if arguments.only not in program.stem:
            continue
        folder = arguments.results.resolve() / tier_of(program, arguments.wine)
        ok = run_program(program, folder, arguments.wine, arguments.seconds, arguments.share)
        print(f"  {program.name}: {'passed' if ok else 'FAILED'}", flush=True)
        good = good and ok
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
