"""Runs Framewright's command line: the native build of it, or the shipped program under Wine.

NQP_FRAMEWRIGHT says which, "native" (the default) or "wine"; NQP_FRAMEWRIGHT_PROGRAM names another
file than the usual one.
"""

from __future__ import annotations

import contextlib
import dataclasses
import os
import pathlib
import signal
import subprocess
import tempfile
import threading
import time
from collections.abc import Callable, Iterator

from stage import BUILD, PROGRAM_BUILD, Stage, windows_path

NATIVE_PROGRAM = BUILD / "native" / "companion" / "framewright"
WINE_PROGRAM = PROGRAM_BUILD / "companion" / "Framewright.exe"

DONE, FAILED, BAD_LINE, CANCELLED = 0, 1, 2, 3
# The sanitizers end a program with this instead of 1, which means a failed job.
SANITIZER_CODE = 99
SANITIZERS = {
    "ASAN_OPTIONS": f"exitcode={SANITIZER_CODE}",
    "UBSAN_OPTIONS": f"exitcode={SANITIZER_CODE}:print_stacktrace=1",
    "LSAN_OPTIONS": f"exitcode={SANITIZER_CODE}",
}
# What Wine ends a crashed program with, as this system sees it.
WINE_CRASHES = (5, 0xC0000005 & 0xFF, 0xC0000409 & 0xFF)

DEADLINE = 60.0
Argument = str | float | pathlib.Path


@dataclasses.dataclass(frozen=True)
class Outcome:
    code: int  # negative: the signal that ended it
    out: str
    err: str
    seconds: float
    peak_kilobytes: int

    @property
    def sentence(self) -> str:
        """The last thing that it said about what went wrong, without the progress before it."""
        lines = self.err.replace("\r", "\n").splitlines()
        said = [line.strip() for line in lines if line.strip() and not line.endswith("copied")]
        return said[-1] if said else ""

    def crash(self, wine: bool) -> str | None:
        """In words, if it was one."""
        report = [line for line in self.err.splitlines() if "Sanitizer" in line]
        report += [line for line in self.err.splitlines() if "runtime error:" in line]
        if report:
            return report[0]
        if self.code < 0:
            return f"ended by signal {signal.Signals(-self.code).name}"
        known = (DONE, FAILED, BAD_LINE, CANCELLED)
        if (wine and self.code in WINE_CRASHES) or self.code not in known:
            return f"ended with {self.code}"
        return None


class Running:
    """A program that was started. It is ended when it is over its deadline."""

    def __init__(self, process: subprocess.Popen[bytes], folder: str, deadline: float) -> None:
        self._process = process
        self._folder = pathlib.Path(folder)
        self._begin = time.monotonic()
        self._deadline = deadline

    def send(self, number: signal.Signals) -> float:
        """Returns when that was."""
        self._process.send_signal(number)
        return time.monotonic()

    def ended(self) -> bool:
        look = os.WEXITED | os.WNOHANG | os.WNOWAIT
        return os.waitid(os.P_PID, self._process.pid, look) is not None

    def progress(self) -> str:
        return (self._folder / "err").read_text(errors="replace")

    def wait(self) -> Outcome:
        status, usage = self._reap()
        code = os.waitstatus_to_exitcode(status)
        self._process.returncode = code
        seconds = time.monotonic() - self._begin
        out, err = ((self._folder / name).read_text(errors="replace") for name in ("out", "err"))
        return Outcome(code, out, err, seconds, usage)

    def _reap(self) -> tuple[int, int]:
        over = self._begin + self._deadline
        with _alarm_clock(self._process, over - time.monotonic()) as late:
            _, status, usage = os.wait4(self._process.pid, 0)
        if late():
            raise AssertionError(f"did not end within {self._deadline:.0f} seconds")
        return status, usage.ru_maxrss


@contextlib.contextmanager
def _alarm_clock(process: subprocess.Popen[bytes], seconds: float) -> Iterator[Callable[[], bool]]:
    rang = threading.Event()

    def ring() -> None:
        rang.set()
        process.kill()

    clock = threading.Timer(max(0.0, seconds), ring)
    clock.start()
    try:
        yield rang.is_set
    finally:
        clock.cancel()


class Framewright:
    def __init__(self, wine: bool) -> None:
        self.wine = wine
        usual = WINE_PROGRAM if wine else NATIVE_PROGRAM
        self.program = pathlib.Path(os.environ.get("NQP_FRAMEWRIGHT_PROGRAM", usual))
        if not self.program.exists():
            raise FileNotFoundError(f"{self.program} is not built")
        self._stage = Stage() if wine else None
        self._env = self._stage.env if self._stage else {**os.environ, **SANITIZERS}

    def close(self) -> None:
        if self._stage:
            self._stage.close()

    def argument(self, value: Argument) -> str:
        if isinstance(value, pathlib.Path):
            return windows_path(value) if self.wine else str(value)
        return value if isinstance(value, str) else f"{value:.6f}"

    def command(self, *arguments: Argument) -> list[str]:
        start = ["wine", str(self.program)] if self.wine else [str(self.program)]
        return [*start, *map(self.argument, arguments)]

    @contextlib.contextmanager
    def started(
        self,
        *arguments: Argument,
        deadline: float = DEADLINE,
        prepare: Callable[[], None] | None = None,
    ) -> Iterator[Running]:
        with tempfile.TemporaryDirectory(prefix="framewright-") as folder:
            with (
                open(f"{folder}/out", "wb") as out,
                open(f"{folder}/err", "wb") as err,
            ):
                process = subprocess.Popen(
                    self.command(*arguments),
                    stdin=subprocess.DEVNULL,
                    stdout=out,
                    stderr=err,
                    env=self._env,
                    preexec_fn=prepare,
                    # A limit on the size of files is then an error of the write, not a signal.
                    restore_signals=prepare is None,
                )
            try:
                yield Running(process, folder, deadline)
            finally:
                if process.returncode is None and process.poll() is None:
                    process.kill()
                    process.wait()

    def run(
        self,
        *arguments: Argument,
        deadline: float = DEADLINE,
        prepare: Callable[[], None] | None = None,
    ) -> Outcome:
        with self.started(*arguments, deadline=deadline, prepare=prepare) as running:
            return running.wait()

    def cut(
        self,
        source: pathlib.Path,
        output: pathlib.Path,
        begin: float,
        end: float | None,
        *options: Argument,
        deadline: float = DEADLINE,
    ) -> Outcome:
        return self.run(*cut_arguments(source, output, begin, end, *options), deadline=deadline)


def cut_arguments(
    source: pathlib.Path,
    output: pathlib.Path,
    begin: float,
    end: float | None,
    *options: Argument,
) -> tuple[Argument, ...]:
    """A still has no end."""
    bounds = ("--from", begin) if end is None else ("--from", begin, "--to", end)
    return ("cut", source, *bounds, "-o", output, *options)


def wanted_by_environment() -> Framewright:
    kind = os.environ.get("NQP_FRAMEWRIGHT", "native")
    if kind not in ("native", "wine"):
        raise ValueError(f"NQP_FRAMEWRIGHT is {kind!r}, neither native nor wine")
    return Framewright(kind == "wine")
