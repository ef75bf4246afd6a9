#!/usr/bin/env python3
"""Adds up the results of a run:  tally.py RESULTS TIER...

Prints every failed test, a table by tier, and last the line "N passed, N failed".
"""

from __future__ import annotations

import pathlib
import sys
import xml.etree.ElementTree as ET

import junit

MESSAGE_LINES = 6


def tier_cases(folder: pathlib.Path) -> list[junit.Case]:
    cases: list[junit.Case] = []
    for path in sorted(folder.glob("*.xml")):
        try:
            cases += junit.read(path)
        except ET.ParseError:
            cases.append(junit.Case(path.name, "this file of results is cut off"))
    return cases


def print_failures(tier: str, cases: list[junit.Case]) -> None:
    for case in cases:
        if case.failure is None:
            continue
        print(f"FAILED {tier}: {case.name}")
        for line in case.failure.strip().splitlines()[:MESSAGE_LINES]:
            print(f"    {line}")


def counts(cases: list[junit.Case]) -> tuple[int, int, int]:
    failed = sum(case.failure is not None for case in cases)
    skipped = sum(case.skipped for case in cases)
    return len(cases) - failed - skipped, failed, skipped


def main() -> int:
    results, tiers = pathlib.Path(sys.argv[1]), sys.argv[2:]
    found = {tier: tier_cases(results / tier) for tier in tiers}
    for tier, cases in found.items():
        print_failures(tier, cases)
    print(f"\n{'tier':<8}{'passed':>8}{'failed':>8}{'skipped':>9}{'seconds':>9}")
    total = [0, 0, 0]
    empty = []
    for tier, cases in found.items():
        row = counts(cases)
        total = [a + b for a, b in zip(total, row)]
        seconds = sum(case.seconds for case in cases)
        print(f"{tier:<8}{row[0]:>8}{row[1]:>8}{row[2]:>9}{seconds:>9.1f}")
        if row[0] + row[1] == 0:
            empty.append(tier)
    for tier in empty:
        print(f"The tier {tier} ran no test.")
    passed, failed, skipped = total
    print(f"{passed} passed, {failed} failed" + (f", {skipped} skipped" if skipped else ""))
    return 1 if failed or empty else 0


if __name__ == "__main__":
    sys.exit(main())
