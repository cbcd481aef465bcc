# SPDX-License-Identifier: GPL-3.0-or-later
"""What is measured of changing the channel, and of the work that playing is at least."""

from __future__ import annotations

import contextlib
import datetime
import json
import pathlib
import statistics
import tempfile
import time
from collections.abc import Iterator

from measures import RUN_SECONDS, RUNS, Bench, Row, compared, fill_screen, milliseconds
from players import IDS, PLACE, Testbed, wait_for_ytdlp
from tools.livesite import LiveSite
from tools.processes import cpu_share
from tools.program import launcher_with

# Each waits for a yt-dlp that takes this long for each channel that is prepared.
SLOW_SECONDS = 5
PREPARED_RUNS = 3
NEIGHBOUR, FAVOURITE = "AlHadath", "AljazeeraMubasher"
YTDLP = "/usr/bin/yt-dlp"
# Milliseconds: half of what it was while each connection waited for an acknowledgement.
ADDRESS_GOAL = 110


class TimedSite(LiveSite):
    """Knows when what was asked for."""

    def __init__(self, *arguments, **keywords):
        super().__init__(*arguments, **keywords)
        self.times: list[tuple[float, str]] = []

    def record(self, path: str) -> None:
        self.times.append((time.monotonic(), path))
        super().record(path)

    def first(self, ending: str, since: float) -> float:
        return next(when for when, path in self.times if when > since and path.endswith(ending))


def address(bench: Bench) -> list[Row]:
    """From a known address to the picture, with what happens on the way."""
    reached: dict[str, list[float]] = {"list asked for": [], "segment asked for": [], "first frame": [], "shown": []}
    with tempfile.TemporaryDirectory() as folder:
        with Testbed(pathlib.Path(folder), bench.build / "orvane", TimedSite) as testbed, testbed.orvane() as program:
            program.wait_for("playing")
            testbed.close_player(program)
            for run in range(RUNS):
                bench.say(f"run {run + 1} of {RUNS}")
                before = program.count("playing")
                chosen = testbed.choose(program, testbed.channels[0])
                seen = testbed.screen.wait_for_colour(PLACE, testbed.channels[0].colour)
                playing = program.started + program.wait_for("playing", before + 1) / 1000
                whens = (testbed.site.first(".m3u8", chosen), testbed.site.first(".ts", chosen), playing, seen)
                for samples, when in zip(reached.values(), whens):
                    samples.append(milliseconds(chosen, when))
                testbed.close_player(program)
    note = ", ".join(f"{what} after {statistics.median(samples):.0f}" for what, samples in reached.items())
    return [Row("address to picture", "ms", reached["shown"], [], statistics.median(reached["shown"]), ADDRESS_GOAL,
                note)]


@contextlib.contextmanager
def _slow_testbed(bench: Bench) -> Iterator[Testbed]:
    """One whose yt-dlp takes long. Only the program sees that."""
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder)
        slow, real = path / "yt-dlp", path / "real"
        slow.write_text(f'#!/bin/sh\nsleep {SLOW_SECONDS}\nexec {real} "$@"\n', encoding="ascii")
        real.write_bytes(pathlib.Path(YTDLP).read_bytes())
        for file in (slow, real):
            file.chmod(0o755)
        launcher = launcher_with(f"mount --bind {slow} {YTDLP}", f"{bench.build}/orvane", path / "launcher")
        with Testbed(path, pathlib.Path(launcher)) as testbed:
            yield testbed


def prepared(bench: Bench) -> list[Row]:
    """A first visit to what was prepared while another channel played."""
    times: dict[str, list[float]] = {NEIGHBOUR: [], FAVOURITE: []}
    for run in range(PREPARED_RUNS):
        bench.say(f"run {run + 1} of {PREPARED_RUNS}")
        with _slow_testbed(bench) as testbed:
            watched = pathlib.Path(testbed.desktop.environment["HOME"]) / ".local/share/orvane/watched.json"
            watched.parent.mkdir(parents=True)
            today = datetime.date.today().isoformat()
            watched.write_text(json.dumps({"days": {today: {IDS[FAVOURITE]: 3600}}}), encoding="ascii")
            channels = testbed.site.channels
            with testbed.orvane(favoriteChannelIDs=[IDS[FAVOURITE]]) as program:
                for handle in times:
                    wait_for_ytdlp(program.process.pid, testbed.page(channels[handle]))
                for handle, samples in times.items():
                    chosen = testbed.choose(program, channels[handle])
                    seen = testbed.screen.wait_for_colour(PLACE, channels[handle].colour)
                    samples.append(milliseconds(chosen, seen))
    return [Row(f"first visit to a prepared {what}", "ms", samples, [], statistics.median(samples), 300,
                f"with a yt-dlp that takes {SLOW_SECONDS} s longer")
            for what, samples in zip(("neighbour", "favourite"), times.values())]


def least(bench: Bench) -> list[Row]:
    """CPU time beside what fetching, decoding and scaling alone take."""
    testbed = bench.testbed
    channel = testbed.channels[0]
    work: dict[str, tuple[list[float], list[float]]] = {"the window": ([], []), "full screen": ([], [])}
    for run in range(RUNS):
        bench.say(f"run {run + 1} of {RUNS}")
        with testbed.orvane() as program:
            testbed.screen.wait_for_colour(PLACE, channel.colour)
            work["the window"][0].append(cpu_share(program.process.pid, RUN_SECONDS))
            fill_screen(testbed, program)
            work["full screen"][0].append(cpu_share(program.process.pid, RUN_SECONDS))
        for size, (_, ffmpeg) in zip(("480:270", "1280:720"), work.values()):
            with testbed.ffmpeg(channel, "-vf", f"scale={size}:flags=fast_bilinear,format=bgr0") as process:
                # What is there already is decoded at once; live is what comes after it.
                time.sleep(RUN_SECONDS)
                ffmpeg.append(cpu_share(process.pid, RUN_SECONDS))
    return [compared(f"CPU in {where}, beside ffmpeg", "%", orvane, ffmpeg, 1.5,
                     "of one core; ffmpeg fetches, decodes and scales the same list")
            for where, (orvane, ffmpeg) in work.items()]


MEASURES = {function.__name__: function for function in (address, prepared, least)}
