# SPDX-License-Identifier: GPL-3.0-or-later
"""What is measured, one function for each measure.

A figure that is compared is the ratio of two medians over alternating runs (Orvane, mpv, Orvane, mpv
...), and any other the median of as many, so that what else the machine does hits both or is left out."""

from __future__ import annotations

import json
import pathlib
import statistics
import subprocess
from collections.abc import Callable
from dataclasses import dataclass

from desktop import Program, wait_until
from players import (FORMAT, MPV_GPU, PLACE, SCREEN_PLACE, Room, cpu_seconds, cpu_share, memory_mib, threads,
                     wait_for_ytdlp, wake_ups)

RUNS = 5
# Of play in each run: together the 30 seconds that are measured.
RUN_SECONDS = 6
SWITCHES = 1000
GROUP = 100
# What buffers that happen to be full or empty make of the mean of many samples.
FLAT_MIB = 10
# Of the time for 10 000 channels to that for 1 000: ten, and what a small start hides of it.
LINEAR_GROWTH = 15


@dataclass
class Row:
    """A line of the table. What is compared has the samples of both players; "figure" is what the goal,
    "at most this", is about."""

    measure: str
    unit: str
    orvane: list[float]
    mpv: list[float]
    figure: float
    goal: float
    note: str = ""

    @property
    def is_met(self) -> bool:
        return self.figure <= self.goal


@dataclass
class Bench:
    """What a measure is made with. `say` tells whoever waits what is going on."""

    room: Room
    build: pathlib.Path
    say: Callable[[str], None]


def compared(measure: str, unit: str, orvane: list[float], mpv: list[float], goal: float, note="") -> Row:
    figure = statistics.median(orvane) / statistics.median(mpv)
    return Row(measure, unit, orvane, mpv, figure, goal, note)


def milliseconds(since: float, until: float) -> float:
    return (until - since) * 1000


# Times to a window and a picture


def window(bench: Bench) -> list[Row]:
    room, orvane, mpv = bench.room, [], []
    channel = room.channels[0]
    for run in range(RUNS):
        bench.say(f"run {run + 1} of {RUNS}")
        room.screen.forget_windows()
        with room.orvane() as program:
            orvane.append(milliseconds(program.started, room.screen.wait_for_window()))
            program.wait_for("window-shown")
        room.screen.forget_windows()
        with room.mpv("--force-window=immediate", room.stream(channel)) as (_, started):
            mpv.append(milliseconds(started, room.screen.wait_for_window()))
    seconds = Row("start to window", "ms", orvane, [], statistics.median(orvane), 250)
    return [seconds, compared("start to window, beside mpv", "ms", orvane, mpv, 1.0)]


def uncached(bench: Bench) -> list[Row]:
    """Every channel of a run is a new one to the program, which has been started and closed before."""
    room, orvane, after_exit, mpv, mpv_stream = bench.room, [], [], [], []
    runs = [channel for channel in room.channels[1:] for _ in range(2)][:RUNS]
    for run, channel in enumerate(runs):
        bench.say(f"run {run + 1} of {len(runs)}")
        with room.orvane() as program:
            program.wait_for("playing")
            room.close_player(program)
            chosen = room.choose(program, channel)
            found = wait_for_ytdlp(program.process.pid, room.page(channel))
            seen = room.screen.wait_for_colour(PLACE, channel.colour)
        orvane.append(milliseconds(chosen, seen))
        after_exit.append(milliseconds(found, seen))
        with room.mpv(f"--ytdl-format={FORMAT}", "--ytdl-raw-options=no-check-certificates=",
                      f"ytdl://{room.page(channel)}") as (_, started):
            mpv.append(milliseconds(started, room.screen.wait_for_colour(PLACE, channel.colour)))
        mpv_stream.append(_mpv_to_picture(room, channel))
    return [
        compared("channel to picture, nothing cached", "ms", orvane, mpv, 1.0),
        compared("yt-dlp's exit to picture", "ms", after_exit, mpv_stream, 1.0),
    ]


def _mpv_to_picture(room: Room, channel) -> float:
    with room.mpv(room.stream(channel)) as (_, started):
        return milliseconds(started, room.screen.wait_for_colour(PLACE, channel.colour))


def cached(bench: Bench) -> list[Row]:
    room, orvane, mpv = bench.room, [], []
    with room.orvane() as program:
        program.wait_for("playing")
        room.close_player(program)
        for run in range(RUNS):
            bench.say(f"run {run + 1} of {RUNS}")
            chosen = room.choose(program, room.channels[0])
            seen = room.screen.wait_for_colour(PLACE, room.channels[0].colour)
            orvane.append(milliseconds(chosen, seen))
            # What is measured next has the machine to itself.
            room.close_player(program)
            mpv.append(_mpv_to_picture(room, room.channels[0]))
    return [compared("channel to picture, address cached", "ms", orvane, mpv, 1.0)]


# The main thread


def _switch(bench: Bench, each: Callable[[Program, list[str]], None]) -> None:
    """Has the probe switch, and hands on what it says of every switch."""
    room = bench.room
    silent = room.channels[-1]
    silent.faults["list"] = "hang"
    with Program(room.desktop, str(bench.build / "play_probe"), room.site.origin, [str(SWITCHES)]) as program:

        def lines() -> list[str]:
            # The program's own messages go to the same log.
            return [line for line in program.log().splitlines() if line.startswith(("played ", "waited "))]

        heard = 0
        while heard < SWITCHES:
            wait_until(lambda: len(lines()) > heard or program.process.poll() is not None, "a switch")
            new = lines()[heard:]
            if not new:
                raise RuntimeError(f"the probe ended: {program.log()[-500:]}")
            for line in new:
                heard += 1
                each(program, line.split())
                if heard % GROUP == 0:
                    bench.say(f"{heard} of {SWITCHES}")


def switches(bench: Bench) -> list[Row]:
    """Of one long run, as it is the length that may make memory grow; what is a figure of a hundred
    switches has a sample for each hundred."""
    told: list[list[str]] = []
    memory, crowd = [], []

    def sample(program: Program, words: list[str]) -> None:
        told.append(words)
        # Rarely: the kernel makes the program wait while it counts.
        if len(told) % 10 == 0:
            memory.append(memory_mib(program.process.pid))
            crowd.append(threads(program.process.pid))

    _switch(bench, sample)
    groups = [told[i:i + GROUP] for i in range(0, SWITCHES, GROUP)]
    longest = [max(float(stall) for _, stall, _ in group) for group in groups]
    on_the_way = [statistics.median(float(stall) for kind, stall, _ in group if kind == "played")
                  for group in groups]
    part = GROUP // 10
    means = [statistics.mean(memory[i:i + part]) for i in range(0, len(memory), part)]
    most = [float(max(crowd[i:i + part])) for i in range(0, len(crowd), part)]
    return [
        Row("longest main-thread stall in 100 switches", "ms", longest, [], statistics.median(longest), 50,
            "every third to a server that never answers"),
        Row("the same, on the way to a cached picture", "ms", on_the_way, [], statistics.median(on_the_way), 16,
            "the median switch of each hundred"),
        Row("memory gained by switching", "MiB", means, [], means[-1] - means[1], FLAT_MIB,
            f"the last hundred of {SWITCHES} over the second"),
        Row("threads gained by switching", "", most, [], most[-1] - most[1], 0, "likewise, the most of each"),
    ]


# Work


def _fill_screen(room: Room, program: Program) -> None:
    room.desktop.run("xdotool", "windowactivate", "--sync", program.window())
    room.desktop.key("f")
    wait_until(lambda: program.frame() == (0, 0, 1280, 720), "full screen")
    room.screen.wait_for_colour(SCREEN_PLACE, room.channels[0].colour)


def _work(bench: Bench, size: str) -> list[list[tuple[float, float, float]]]:
    """Percent of a core for the player and for the X server that it has draw, and its memory."""

    def sample(pid: int):
        before = cpu_seconds(bench.room.desktop.x_server)
        share = cpu_share(pid, RUN_SECONDS)
        server = 100 * (cpu_seconds(bench.room.desktop.x_server) - before) / RUN_SECONDS
        return share, server, memory_mib(pid)

    room, orvane, mpv = bench.room, [], []
    channel = room.channels[0]
    place = PLACE if size == "window" else SCREEN_PLACE
    for run in range(RUNS):
        bench.say(f"run {run + 1} of {RUNS}")
        with room.orvane() as program:
            program.wait_for("playing")
            if size == "screen":
                _fill_screen(room, program)
            room.screen.wait_for_colour(place, channel.colour)
            orvane.append(sample(program.process.pid))
        with room.mpv(*MPV_GPU, *(["--fs"] if size == "screen" else []), room.stream(channel)) as (process, _):
            room.screen.wait_for_colour(place, channel.colour)
            mpv.append(sample(process.pid))
    return [orvane, mpv]


def _cpu_row(measure: str, orvane, mpv, goal: float) -> Row:
    servers = [statistics.median(sample[1] for sample in samples) for samples in (orvane, mpv)]
    note = "of one core; the X server used {:.1f} % and {:.1f} %".format(*servers)
    return compared(measure, "%", [s[0] for s in orvane], [s[0] for s in mpv], goal, note)


def small(bench: Bench) -> list[Row]:
    orvane, mpv = _work(bench, "window")
    return [
        _cpu_row("CPU in the window", orvane, mpv, 0.6),
        compared("memory (PSS) in the window", "MiB", [s[2] for s in orvane], [s[2] for s in mpv], 0.75),
    ]


def full(bench: Bench) -> list[Row]:
    orvane, mpv = _work(bench, "screen")
    return [_cpu_row("CPU in full screen", orvane, mpv, 0.4)]


def closed(bench: Bench) -> list[Row]:
    room, rates, shares = bench.room, [], []
    with room.orvane() as program:
        program.wait_for("playing")
        room.close_player(program)
        pid = program.process.pid
        for run in range(RUNS):
            bench.say(f"run {run + 1} of {RUNS}")
            before = wake_ups(pid)
            shares.append(cpu_share(pid, RUN_SECONDS))
            # A thread that has gone takes its count with it.
            woken = sum(count - before.get(thread, 0) for thread, count in wake_ups(pid).items())
            rates.append(woken / RUN_SECONDS)
    note = f"{statistics.median(shares):.2f} % of one core"
    return [Row("wake-ups a second, window closed", "", rates, [], statistics.median(rates), 0, note)]


# Parts


def parts(bench: Bench) -> list[Row]:
    bench.say("menus, lookup, stepping and lists with up to 10 000 channels")
    done = subprocess.run(
        [bench.build / "part_benchmarks", f"--benchmark_repetitions={RUNS}", "--benchmark_min_time=0.02",
         "--benchmark_report_aggregates_only=true", "--benchmark_format=json"],
        check=True, capture_output=True, text=True)
    times: dict[str, dict[int, float]] = {}
    for result in json.loads(done.stdout)["benchmarks"]:
        if result["aggregate_name"] == "median":
            part, size = result["run_name"].split("/")
            times.setdefault(part, {})[int(size)] = result["real_time"]
    rows = []
    for part, by_size in times.items():
        sizes = list(by_size.values())
        note = "ms with 0, 100, 1 000, 10 000 channels; the figure is the last to the one before"
        rows.append(Row(f"growth: {part}", "ms", sizes, [], by_size[10000] / by_size[1000], LINEAR_GROWTH, note))
    slowest = max(times["statusMenu"][1000], times["contextMenu"][1000])
    return rows + [Row("a menu with 1 000 channels", "ms", [slowest], [], slowest, 50)]


# In the order in which they are measured.
MEASURES = {function.__name__: function for function in
            (window, uncached, cached, small, full, closed, parts, switches)}
