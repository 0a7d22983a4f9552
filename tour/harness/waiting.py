"""Waiting for something to become true."""

import time
from typing import Callable, TypeVar

T = TypeVar("T")

DEADLINE = 60.0  # s; generous: reaching it means that what was awaited never comes


class NeverHappened(AssertionError):
    """What was waited for did not come before the deadline."""


def wait_until(look: Callable[[], T], what: str, interval: float = 0.01) -> T:
    """Looks every `interval` seconds until the result is true and returns it; `what` names it in the error."""
    end = time.monotonic() + DEADLINE
    while not (seen := look()):
        if time.monotonic() > end:
            raise NeverHappened(f"waited {DEADLINE:.0f} s in vain for {what}")
        time.sleep(interval)
    return seen
