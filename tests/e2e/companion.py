"""The stand-in for the companion program: what it is to do, and what it was told."""

from __future__ import annotations

import os
import pathlib

from player import ProgramFolder
from stage import PROGRAM_BUILD, windows_path

PROGRAM = PROGRAM_BUILD / "tests" / "stand-in" / "Framewright.exe"
SAVE_BUFFER = 257  # characters, NULs behind the path


class Companion:
    def __init__(self, folder: ProgramFolder) -> None:
        """Puts it into a program folder."""
        self.folder = folder.path
        os.link(PROGRAM, self.folder / PROGRAM.name)

    def will(self, *script: str) -> None:
        (self.folder / "stand-in.txt").write_text("\n".join(script) + "\n")
        self.log_file.unlink(missing_ok=True)

    @property
    def log_file(self) -> pathlib.Path:
        return self.folder / "stand-in.log"

    def log(self) -> list[str]:
        return self.log_file.read_text().splitlines() if self.log_file.exists() else []

    def told(self) -> list[str]:
        """All that happened, without the number of its process and its end."""
        lines = [line for line in self.log() if line != "released"]
        return ["get ProcessId" if line.startswith("get ProcessId") else line for line in lines]


def padded(target: pathlib.Path) -> str:
    """A path as the save dialog's buffer hands it on: 257 bytes of UTF-8."""
    path = windows_path(target)
    return path + "\\0" * (SAVE_BUFFER - len(path.encode()))


def members(
    folder: ProgramFolder, source: pathlib.Path, mode: int, output: str, begin: int, end: int
) -> list[str]:
    """What every job is told, in its order, up to the number of the process."""
    own = windows_path(folder.path)
    return [
        f"Mode\t{mode}",
        "Percentage\t40",
        f"StatusFile\t{own}\\status.txt",
        f"CancelFile\t{own}\\flag.txt",
        f"OutputFile\t{output}",
        f"SourceFile\t{windows_path(source)}",
        f"FragmentStart\t{begin:.3f}",
        f"FragmentEnd\t{end:.3f}",
        "get ProcessId",
    ]
