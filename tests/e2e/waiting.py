"""Waiting for a state, with a deadline."""

from __future__ import annotations

import time
from collections.abc import Callable
from typing import TypeVar

Value = TypeVar("Value")

POLL_SECONDS = 0.02


def until(condition: Callable[[], Value], seconds: float, what: str) -> Value:
    """Returns the first value that counts as true; fails with what was seen last."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() >= deadline:
            raise AssertionError(f"{what}: not within {seconds} seconds, last seen {value!r}")
        time.sleep(POLL_SECONDS)


def equals(read: Callable[[], Value], wanted: Value, seconds: float, what: str) -> None:
    deadline = time.monotonic() + seconds
    while (value := read()) != wanted:
        if time.monotonic() >= deadline:
            raise AssertionError(f"{what}: {value!r} after {seconds} seconds, not {wanted!r}")
        time.sleep(POLL_SECONDS)
