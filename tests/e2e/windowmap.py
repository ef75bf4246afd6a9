"""The control ids of the program's windows, from the map that the build writes."""

from __future__ import annotations

import functools
import re

from stage import ROOT

MAP = ROOT / "docs" / "window-map.md"


@functools.cache
def _ids() -> dict[tuple[str, str], int]:
    ids: dict[tuple[str, str], int] = {}
    window = ""
    for line in MAP.read_text().splitlines():
        if heading := re.search(r"^#.*\b(Form\d+|InsertBMPForm|FormatDialog)\b", line):
            window = "nqp." + heading[1]
        cells = [cell.strip(" `") for cell in line.strip().strip("|").split("|")]
        numbers = [cell for cell in cells if cell.isdigit()]
        names = [cell for cell in cells if re.fullmatch(r"[A-Za-z]\w*(\(\d+\))?", cell)]
        if numbers and names:
            ids.setdefault((window, names[0]), int(numbers[0]))
    return ids


def control_id(window: str, control: str) -> int:
    assert (window, control) in _ids(), f"{MAP.name} does not list {control} of {window}"
    return _ids()[window, control]
