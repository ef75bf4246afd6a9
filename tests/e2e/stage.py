"""The private display, sound sink and Wine prefixes of one run of the tests."""

from __future__ import annotations

import os
import pathlib
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = ROOT / "build"
PROGRAM_BUILD = pathlib.Path(os.environ.get("NQP_PROGRAM_BUILD", BUILD / "mingw-x64"))
STAGE_SCRIPT = ROOT / "tools" / "stage.sh"
PLAIN_DPI = 96


class Stage:
    def __init__(self) -> None:
        self._holder = subprocess.Popen(
            [STAGE_SCRIPT, "hold"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True
        )
        self.env = {**os.environ, **self._variables()}
        self.folder = pathlib.Path(self.env["NQP_STAGE"])

    def _variables(self) -> dict[str, str]:
        assert self._holder.stdout is not None
        variables: dict[str, str] = {}
        for line in self._holder.stdout:
            name, equals, value = line.rstrip("\n").partition("=")
            if name == "ready" and not equals:
                return variables
            variables[name] = value
        raise RuntimeError("the stage did not start")

    def prefix_env(self, dpi: int) -> dict[str, str]:
        """The variables of a prefix with this many dots per inch; it is made when first asked."""
        if dpi == PLAIN_DPI:
            return self.env
        prefix = self.folder / f"prefix-{dpi}"
        if not prefix.is_dir():
            subprocess.run([STAGE_SCRIPT, "prefix", prefix, str(dpi)], check=True, env=self.env)
        return {**self.env, "WINEPREFIX": str(prefix)}

    def close(self) -> None:
        assert self._holder.stdin is not None
        self._holder.stdin.close()
        self._holder.wait(timeout=60)


def windows_path(path: pathlib.Path) -> str:
    return "Z:" + str(path).replace("/", "\\")
