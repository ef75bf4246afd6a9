"""Fixtures of the companion's tests: one program for the whole run, and a folder for each test."""

from __future__ import annotations

import pathlib
import sys
from collections.abc import Iterator

import pytest

HERE = pathlib.Path(__file__).parent
sys.path[:0] = [str(HERE), str(HERE.parent / "e2e")]

from framewright import Framewright, wanted_by_environment  # noqa: E402


@pytest.fixture(scope="session")
def program() -> Iterator[Framewright]:
    made = wanted_by_environment()
    yield made
    made.close()


@pytest.fixture
def native(program: Framewright) -> Framewright:
    """For what this system does to a program, and no Windows."""
    if program.wine:
        pytest.skip("is looked at in the native build")
    return program
