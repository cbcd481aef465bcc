# SPDX-License-Identifier: GPL-3.0-or-later
"""What is measured, one function for each measure.

A figure that is compared is the ratio of two medians over alternating runs (Orvane, mpv, Orvane, mpv
...), and any other the median of as many, so that other load on the machine affects both or is left out."""

from __future__ import annotations

import concurrent.futures
import contextlib
import json
import pathlib
import statistics
import subprocess
import tempfile
import time
from collections.abc import Callable
from dataclasses import dataclass

from hours import HOURS, FastSite
from players import FORMAT, MPV_GPU, PLACE, SCREEN_PLACE, Testbed, wait_for_ytdlp
from tools.processes import buffer_mib, cpu_seconds, cpu_share, memory_mib, own_memory_mib, threads, wake_ups
from tools.program import Program
from tools.waiting import wait_until

RUNS = 5
# Of play in each run; 30 seconds in all.
RUN_SECONDS = 6
SWITCHES = 1000
GROUP = 100
# MiB: the share of buffers that happen to be full or empty.
FLAT_MIB = 10
# Ratio of the time for 10 000 channels to that for 1 000: ten, and a margin for constant costs.
LINEAR_GROWTH = 15


@dataclass
class Row:
    """A line of the table. A comparison has samples of both players. `figure` must be at most `goal`."""

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
    """What a measure works with. `say` prints the progress."""

    testbed: Testbed
    build: pathlib.Path
    say: Callable[[str], None]


def compared(measure: str, unit: str, orvane: list[float], mpv: list[float], goal: float, note="") -> Row:
    figure = statistics.median(orvane) / statistics.median(mpv)
    return Row(measure, unit, orvane, mpv, figure, goal, note)


def milliseconds(since: float, until: float) -> float:
    return (until - since) * 1000


# Times to a window and a picture


def window(bench: Bench) -> list[Row]:
    testbed, orvane, mpv = bench.testbed, [], []
    channel = testbed.channels[0]
    for run in range(RUNS):
        bench.say(f"run {run + 1} of {RUNS}")
        testbed.screen.forget_windows()
        with testbed.orvane() as program:
            orvane.append(milliseconds(program.started, testbed.screen.wait_for_window()))
            program.wait_for("window-shown")
        testbed.screen.forget_windows()
        with testbed.mpv("--force-window=immediate", testbed.stream(channel)) as (_, started):
            mpv.append(milliseconds(started, testbed.screen.wait_for_window()))
    seconds = Row("start to window", "ms", orvane, [], statistics.median(orvane), 250)
    return [seconds, compared("start to window, beside mpv", "ms", orvane, mpv, 1.0)]


def uncached(bench: Bench) -> list[Row]:
    """Each run uses a channel that the program has not resolved yet; its window is closed before."""
    testbed, orvane, after_exit, mpv, mpv_stream = bench.testbed, [], [], [], []
    runs = [channel for channel in testbed.channels[1:] for _ in range(2)][:RUNS]
    for run, channel in enumerate(runs):
        bench.say(f"run {run + 1} of {len(runs)}")
        with testbed.orvane() as program:
            program.wait_for("playing")
            testbed.close_player(program)
            chosen = testbed.choose(program, channel)
            found = wait_for_ytdlp(program.process.pid, testbed.page(channel))
            seen = testbed.screen.wait_for_colour(PLACE, channel.colour)
        orvane.append(milliseconds(chosen, seen))
        after_exit.append(milliseconds(found, seen))
        with testbed.mpv(f"--ytdl-format={FORMAT}", "--ytdl-raw-options=no-check-certificates=",
                      f"ytdl://{testbed.page(channel)}") as (_, started):
            mpv.append(milliseconds(started, testbed.screen.wait_for_colour(PLACE, channel.colour)))
        mpv_stream.append(_mpv_to_picture(testbed, channel))
    return [
        compared("channel to picture, nothing cached", "ms", orvane, mpv, 1.0),
        compared("yt-dlp's exit to picture", "ms", after_exit, mpv_stream, 1.0),
    ]


def _mpv_to_picture(testbed: Testbed, channel) -> float:
    with testbed.mpv(testbed.stream(channel)) as (_, started):
        return milliseconds(started, testbed.screen.wait_for_colour(PLACE, channel.colour))


def cached(bench: Bench) -> list[Row]:
    testbed, orvane, mpv = bench.testbed, [], []
    with testbed.orvane() as program:
        program.wait_for("playing")
        testbed.close_player(program)
        for run in range(RUNS):
            bench.say(f"run {run + 1} of {RUNS}")
            chosen = testbed.choose(program, testbed.channels[0])
            seen = testbed.screen.wait_for_colour(PLACE, testbed.channels[0].colour)
            orvane.append(milliseconds(chosen, seen))
            # The next measurement must have the machine to itself.
            testbed.close_player(program)
            mpv.append(_mpv_to_picture(testbed, testbed.channels[0]))
    return [compared("channel to picture, address cached", "ms", orvane, mpv, 1.0)]


# Stalls of the main thread, and leaks


@dataclass
class Usage:
    """The least memory and threads of a program in each stretch of a long run: a leak raises them, players that
    come and go do not."""

    memory: list[float]
    threads: list[float]

    @staticmethod
    def of(stretches: list[list[tuple[float, int]]]) -> "Usage":
        return Usage([min(memory for memory, _ in stretch) for stretch in stretches],
                       [float(min(count for _, count in stretch)) for stretch in stretches])

    def rows(self, by: str, stretch: str) -> list[Row]:
        """Compares the last stretch to the second: in the first one the program allocates what it keeps."""
        note = f"the last {stretch} over the second, the least of each"
        return [
            Row(f"memory gained by {by}", "MiB", self.memory, [], self.memory[-1] - self.memory[1], FLAT_MIB, note),
            Row(f"threads gained by {by}", "", self.threads, [], self.threads[-1] - self.threads[1], 0, note),
        ]


def _sample(pid: int) -> tuple[float, int]:
    return own_memory_mib(pid), threads(pid)


@dataclass
class Switch:
    kind: str
    stall: float


class Switches:
    """The play probe in a testbed where one channel never answers. Use as a context manager."""

    def __init__(self, bench: Bench):
        self._bench = bench
        bench.testbed.channels[-1].faults["list"] = "hang"

    def __enter__(self) -> "Switches":
        testbed = self._bench.testbed
        self._program = Program(testbed.desktop, str(self._bench.build / "play_probe"), testbed.site.origin,
                                [str(SWITCHES)])
        self._seen: list[Switch] = []
        return self

    def __exit__(self, *exception) -> None:
        self._program.__exit__(*exception)

    def _lines(self) -> list[list[str]]:
        # The log also has the program's messages.
        return [line.split() for line in self._program.log().splitlines() if line.startswith(("played ", "waited "))]

    def take(self, count: int) -> tuple[list[Switch], list[tuple[float, int]]]:
        """Waits for the next switches; returns them, and samples of the probe meanwhile."""
        samples = []
        first = len(self._seen)
        while len(self._seen) < first + count:
            seen = len(self._seen)
            wait_until(lambda: len(self._lines()) > seen or self._program.process.poll() is not None, "a switch")
            new = self._lines()[seen:first + count]
            if not new:
                raise RuntimeError(f"the probe ended: {self._program.log()[-500:]}")
            self._seen += [Switch(kind, float(stall)) for kind, stall, _ in new]
            # Rarely, since the kernel stops the program while it counts the memory.
            if len(self._seen) // 10 > seen // 10 and self._program.process.poll() is None:
                samples.append(_sample(self._program.process.pid))
        self._bench.say(f"{len(self._seen)} of {SWITCHES} switches")
        return self._seen[first:], samples


class EightHours:
    """Orvane in a testbed of its own where hours pass in minutes. Use as a context manager."""

    def __init__(self, build: pathlib.Path, site: type[FastSite] = FastSite, minutes: int = 0):
        self._stack = contextlib.ExitStack()
        self._build = build
        self._site = site
        self._minutes = minutes

    def __enter__(self) -> "EightHours":
        folder = pathlib.Path(self._stack.enter_context(tempfile.TemporaryDirectory()))
        self._testbed = self._stack.enter_context(Testbed(folder, self._build / "orvane", self._site))
        self._program = self._stack.enter_context(self._testbed.orvane(bufferMinutes=self._minutes))
        self._program.wait_for("playing")
        self._hours: list[list[tuple[float, int]]] = [[] for _ in range(HOURS)]
        self._disk: list[list[float]] = [[] for _ in range(HOURS)]
        return self

    def __exit__(self, *exception) -> None:
        self._stack.__exit__(*exception)

    def watch(self) -> None:
        """Waits until they have passed."""
        while (hour := int(self._testbed.site.hours)) < HOURS:
            if self._program.count("error"):
                raise RuntimeError(f"the play broke off after {self._testbed.site.hours:.1f} hours")
            self._hours[hour].append(_sample(self._program.process.pid))
            self._disk[hour].append(buffer_mib(self._program.process.pid))
            time.sleep(0.5)
        if self._testbed.site.missed:
            raise RuntimeError(f"the play was too slow: it left out {self._testbed.site.missed} segments")

    def rows(self) -> list[Row]:
        return Usage.of(self._hours).rows("eight hours of play", "hour")

    def rows_of_buffer(self) -> list[Row]:
        """Compares the last hour with the fourth, in which the buffer is full already."""
        disk = [max(hour) for hour in self._disk]
        return [*Usage.of(self._hours[2:]).rows("eight hours with a full buffer", "hour"),
                Row("most on the disk in eight hours", "MiB", disk, [], disk[-1] / disk[3], 1.1,
                    "the last hour to the fourth, the most of each")]


def endurance(bench: Bench) -> list[Row]:
    """Measures the main thread while nothing else runs; then eight hours pass beside the rest of the switches, since
    neither affects the memory of the other."""
    groups: list[list[Switch]] = []
    samples: list[list[tuple[float, int]]] = []

    def take(count: int) -> None:
        for _ in range(count):
            switches, held = run.take(GROUP)
            groups.append(switches)
            samples.append(held)

    with Switches(bench) as run, concurrent.futures.ThreadPoolExecutor(1) as beside:
        take(RUNS)
        with EightHours(bench.build) as hours:
            watching = beside.submit(hours.watch)
            take(SWITCHES // GROUP - RUNS)
            bench.say("the rest of eight hours")
            watching.result()
    longest = [max(switch.stall for switch in group) for group in groups[:RUNS]]
    on_the_way = [max(switch.stall for switch in group if switch.kind == "played") for group in groups[:RUNS]]
    return [
        Row("longest main-thread stall in 100 switches", "ms", longest, [], statistics.median(longest), 50,
            "every third to a server that never answers"),
        Row("the same, on the way to a cached picture", "ms", on_the_way, [], statistics.median(on_the_way), 16,
            "the longest in each hundred, too"),
        *Usage.of(samples).rows(f"{SWITCHES} switches", "hundred"),
        *hours.rows(),
    ]


# Work


def fill_screen(testbed: Testbed, program: Program) -> None:
    testbed.desktop.activate(program.window())
    testbed.desktop.key("f")
    wait_until(lambda: program.frame() == (0, 0, 1280, 720), "full screen")
    testbed.screen.wait_for_colour(SCREEN_PLACE, testbed.channels[0].colour)


def _work(bench: Bench, size: str) -> list[list[tuple[float, float, float]]]:
    """Returns samples of percent of a core for the player and for the X server, and of the player's memory."""

    def sample(pid: int):
        before = cpu_seconds(bench.testbed.desktop.x_server)
        share = cpu_share(pid, RUN_SECONDS)
        server = 100 * (cpu_seconds(bench.testbed.desktop.x_server) - before) / RUN_SECONDS
        return share, server, memory_mib(pid)

    testbed, orvane, mpv = bench.testbed, [], []
    channel = testbed.channels[0]
    place = PLACE if size == "window" else SCREEN_PLACE
    for run in range(RUNS):
        bench.say(f"run {run + 1} of {RUNS}")
        with testbed.orvane() as program:
            program.wait_for("playing")
            if size == "screen":
                fill_screen(testbed, program)
            testbed.screen.wait_for_colour(place, channel.colour)
            orvane.append(sample(program.process.pid))
        with testbed.mpv(*MPV_GPU, *(["--fs"] if size == "screen" else []), testbed.stream(channel)) as (process, _):
            testbed.screen.wait_for_colour(place, channel.colour)
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
    testbed, rates, shares = bench.testbed, [], []
    with testbed.orvane() as program:
        program.wait_for("playing")
        testbed.close_player(program)
        pid = program.process.pid
        for run in range(RUNS):
            bench.say(f"run {run + 1} of {RUNS}")
            before = wake_ups(pid)
            shares.append(cpu_share(pid, RUN_SECONDS))
            # The count of a thread that has ended is lost.
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
            (window, uncached, cached, small, full, closed, parts, endurance)}
