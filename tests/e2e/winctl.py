"""The driver that sees the program's windows from inside the Wine prefix."""

from __future__ import annotations

import os
import pathlib
import select
import subprocess
import time

from stage import PROGRAM_BUILD

PROGRAM = PROGRAM_BUILD / "tests" / "winctl.exe"
ANSWER_SECONDS = 30.0


class WinctlError(AssertionError):
    """What the driver could not do."""


class Winctl:
    """One process serves all questions; a question takes about a millisecond."""

    def __init__(self, env: dict[str, str], log: pathlib.Path) -> None:
        self.log = log
        self._log_file = log.open("ab")
        self._process = subprocess.Popen(
            ["wine", str(PROGRAM), "serve"],
            env=env,
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=self._log_file,
        )
        self._pending = b""

    def ask(self, *words: object, seconds: float = ANSWER_SECONDS) -> list[list[str]]:
        assert self._process.stdin is not None
        line = "\t".join(str(word) for word in words) + "\n"
        self._process.stdin.write(line.encode())
        self._process.stdin.flush()
        deadline = time.monotonic() + seconds
        rows: list[list[str]] = []
        while True:
            answer = self._line(deadline, line)
            if answer.startswith("|"):
                rows.append([_plain(field) for field in answer[1:].split("\t")])
            elif answer == ". ok":
                return rows
            else:
                raise WinctlError(_plain(answer.removeprefix(". error ")))

    def _line(self, deadline: float, question: str) -> str:
        assert self._process.stdout is not None
        while b"\n" not in self._pending:
            left = max(0.0, deadline - time.monotonic())
            ready, _, _ = select.select([self._process.stdout], [], [], left)
            part = os.read(self._process.stdout.fileno(), 65536) if ready else b""
            if not part:
                raise WinctlError(f"no answer to {question!r}")
            self._pending += part
        line, _, self._pending = self._pending.partition(b"\n")
        return line.decode()

    def close(self) -> None:
        assert self._process.stdin is not None
        self._process.stdin.close()
        self._process.wait(timeout=20)
        self._log_file.close()


def _plain(text: str) -> str:
    out = []
    characters = iter(text)
    for character in characters:
        if character == "\\":
            following = next(characters, "")
            character = {"n": "\n", "t": "\t"}.get(following, following)
        out.append(character)
    return "".join(out)
