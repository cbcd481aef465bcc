# SPDX-License-Identifier: GPL-3.0-or-later
"""Waits for conditions instead of fixed times."""

from __future__ import annotations

import os
import time

# Seconds. Long enough for a busy machine: only a test that fails waits for all of it.
DEADLINE = float(os.environ.get("ORVANE_TEST_DEADLINE", "60"))


class Timeout(AssertionError):
    pass


def wait_until(condition, what, deadline: float = DEADLINE):
    """Returns the first true value of `condition`; raises Timeout when none comes in time. `what` describes
    it for the message: a text, or a function that returns one at that time."""
    end = time.monotonic() + deadline
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Timeout(f"not within {deadline:.0f} s: {what() if callable(what) else what}")
        time.sleep(0.02)


def stays(condition, what, seconds: float) -> None:
    """Raises AssertionError as soon as `condition` does not hold within the given time."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        assert condition(), f"not for {seconds} s: {what}"
        time.sleep(0.02)
