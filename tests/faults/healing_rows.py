# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults that pass: the channel must come back by itself, without a click."""

import threading
import time

from fixture import Fixture
from rows import Row
from tool_rows import REAL, Tool
from tools.program import wait_for_motion

# The delays between attempts are 5, 15 and 60 s, and the attempts themselves take some seconds.
NEXT_ATTEMPT = 90
# A channel that is not live is tried again every five minutes.
NEXT_LOOK = 330


def comes_back(fixture: Fixture, deadline: float) -> str:
    """Waits for the error and then for the picture."""
    said = fixture.error()
    began = time.monotonic()
    wait_for_motion(fixture.program, fixture.channel, deadline)
    first = said.splitlines()[-1][:80]
    return f'"{first}"; plays by itself {time.monotonic() - began:.0f} s later'


def passing(cause, end, seconds: float):
    """The fault begins during playback and ends after `seconds`, whatever the program does."""
    def check(fixture: Fixture) -> str:
        fixture.start()
        fixture.plays()
        cause(fixture)
        timer = threading.Timer(seconds, end, [fixture])
        timer.start()
        try:
            return comes_back(fixture, seconds + NEXT_ATTEMPT)
        finally:
            timer.cancel()
    return check


def page_is_missing(fixture: Fixture) -> str:
    fixture.channel.faults |= {"page": 404, "watch": 404}
    timer = threading.Timer(30, fixture.channel.faults.clear)
    fixture.start()
    timer.start()
    return comes_back(fixture, 30 + NEXT_ATTEMPT)


def not_live(fixture: Fixture) -> str:
    tool = Tool(fixture)
    tool.install("echo 'ERROR: [youtube:tab] @x: The channel is not currently live' >&2; exit 1")
    tool.start()
    threading.Timer(20, tool.install, [f'exec {REAL} "$@"']).start()
    return comes_back(fixture, NEXT_LOOK)


def end_stream(fixture: Fixture) -> None:
    fixture.channel.ends = True
    fixture.channel.frozen_at = time.monotonic()


def restart_stream(fixture: Fixture) -> None:
    fixture.channel.ends = False
    fixture.channel.frozen_at = None


ROWS = [
    Row("healing.site-down", "the site is down for 40 s",
        passing(lambda fixture: fixture.site.die(), lambda fixture: fixture.site.revive(), 40)),
    Row("healing.page-404", "404 on the pages for 30 s", page_is_missing),
    Row("healing.not-live", "the channel is not live for 20 s", not_live),
    Row("healing.ends", "the stream ends, and starts again after 20 s", passing(end_stream, restart_stream, 20)),
]
