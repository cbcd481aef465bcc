# SPDX-License-Identifier: GPL-3.0-or-later
"""What is measured of going back in time, and of playing the sound alone."""

from __future__ import annotations

import contextlib
import pathlib
import statistics
import tempfile
import time
from collections.abc import Iterator

from hours import BufferSite
from measures import FLAT_MIB, RUNS, Bench, EightHours, Row, compared, milliseconds
from players import PICTURE, PLACE, Testbed
from tools.clocksite import ClockSite, clock_places, seconds_of
from tools.processes import cpu_share, own_memory_mib
from tools.waiting import wait_until

BACK_SECONDS = 10
BUFFER_MINUTES = 5
# Of sound in each run, which is so little work that the kernel's clock is a coarse one for it.
SOUND_SECONDS = 15
# Of play after the buffer is full.
LAST_SECONDS = 30


@contextlib.contextmanager
def _testbed(bench: Bench) -> Iterator[Testbed]:
    """One whose picture shows the time."""
    with tempfile.TemporaryDirectory() as folder:
        with Testbed(pathlib.Path(folder), bench.build / "orvane", ClockSite) as testbed:
            yield testbed


def _wait(seconds: float) -> None:
    begun = time.monotonic()
    wait_until(lambda: time.monotonic() - begun > seconds, "time", seconds + 1)


def back(bench: Bench) -> list[Row]:
    times = []
    places = [(PICTURE[0] + x, PICTURE[1] + y) for x, y in clock_places(*PICTURE[2:])]
    with _testbed(bench) as testbed, testbed.orvane() as program:
        testbed.screen.wait_for_colour(PLACE, testbed.channels[0].colour)

        def shown() -> float:
            return seconds_of([testbed.screen.pixel(*place) for place in places]) or 0

        def wait_for_time(wanted: float) -> float:
            """Returns when it was first seen. Seen twice, as a frame may come between reading two of the boxes."""
            end, seen = time.monotonic() + 10, None
            while time.monotonic() < end:
                now = time.monotonic()
                if abs(shown() - wanted) > 2:
                    seen = None
                elif seen is None:
                    seen = now
                else:
                    return seen
            raise TimeoutError(f"{wanted} was not shown, but {shown()}")

        _wait(2 * BACK_SECONDS)
        testbed.desktop.activate(program.window())
        for run in range(RUNS):
            bench.say(f"run {run + 1} of {RUNS}")
            before = shown()
            pressed = time.monotonic()
            testbed.desktop.key("BackSpace")
            times.append(milliseconds(pressed, wait_for_time(before - BACK_SECONDS)))
            testbed.desktop.key("End")
            wait_until(lambda: shown() > before, "live")
            _wait(3)
    return [Row("back ten seconds to picture", "ms", times, [], statistics.median(times), 150,
                "from the start of the tool that presses the key")]


def buffer(bench: Bench) -> list[Row]:
    """Two programs beside each other, one of which keeps nothing."""
    with contextlib.ExitStack() as stack:
        pids = {}
        for minutes in (BUFFER_MINUTES, 0):
            testbed = stack.enter_context(_testbed(bench))
            program = stack.enter_context(testbed.orvane(bufferMinutes=minutes))
            program.wait_for("playing")
            pids[minutes] = program.process.pid
        bench.say(f"{BUFFER_MINUTES} minutes")
        _wait(BUFFER_MINUTES * 60 + LAST_SECONDS)
        samples: dict[int, list[float]] = {minutes: [] for minutes in pids}
        for _ in range(LAST_SECONDS):
            for minutes, pid in pids.items():
                samples[minutes].append(own_memory_mib(pid))
            _wait(1)
    full, empty = samples[BUFFER_MINUTES], samples[0]
    return [Row("memory with a full five-minute buffer", "MiB", full, [],
                statistics.median(full) - statistics.median(empty), FLAT_MIB,
                f"over {statistics.median(empty):.0f} MiB without one, which plays beside it")]


def sound(bench: Bench) -> list[Row]:
    orvane, ffmpeg = [], []
    testbed = bench.testbed
    channel = testbed.channels[0]
    for run in range(RUNS):
        bench.say(f"run {run + 1} of {RUNS}")
        with testbed.orvane() as program:
            testbed.screen.wait_for_colour(PLACE, channel.colour)
            testbed.desktop.activate(program.window())
            testbed.desktop.key("s")
            wait_until(lambda: not program.is_shown(), "a hidden window")
            _wait(2)
            orvane.append(cpu_share(program.process.pid, SOUND_SECONDS))
        with testbed.ffmpeg(channel, "-vn") as process:
            _wait(3)
            ffmpeg.append(cpu_share(process.pid, SOUND_SECONDS))
    return [compared("CPU with the sound only, beside ffmpeg", "%", orvane, ffmpeg, 1.2,
                     "of one core; ffmpeg fetches the same list and decodes its sound")]


def hours(bench: Bench) -> list[Row]:
    bench.say("twenty minutes")
    with EightHours(bench.build, BufferSite, BUFFER_MINUTES) as watched:
        watched.watch()
        return watched.rows_of_buffer()


MEASURES = {function.__name__: function for function in (back, sound, buffer, hours)}
