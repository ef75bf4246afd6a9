#!/usr/bin/env python3
"""Records one result of a shell script:  record.py FILE NAME 1|0 TEXT-WHEN-FAILED"""

from __future__ import annotations

import pathlib
import sys

import junit


def main() -> None:
    path, name, passed, text = sys.argv[1:5]
    suite, _, case = name.partition(".")
    junit.write(
        pathlib.Path(path), suite, [junit.Case(case, None if passed == "1" else text)]
    )


if __name__ == "__main__":
    main()
