# SPDX-License-Identifier: GPL-3.0-or-later
"""Switches channels at random, over a site whose faults change every second, and prints each minute what the program
holds: the least memory, threads and descriptors of the minute, and its children. Fails if the program ends, leaves a
zombie or a child behind, or holds more at the end than in its second minute."""

from __future__ import annotations

import argparse
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass

from tools.channels import Channel
from tools.desktop import Desktop
from tools.livesite import LiveSite
from tools.processes import descendants, own_memory_mib, threads, wait_for_ends
from tools.program import Program
from tools.waiting import Timeout

RESOURCES = ("page", "watch", "master", "list", "segment")
FAULTS = (403, 404, 410, 429, 500, 503, 204, "hang", "loop", "empty")
# What is served in place of a resource.
BODIES = {
    "noise": lambda path: random.randbytes(20_000),
    "itself": lambda path: f"#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=1\n{path}\n".encode(),
    "other demuxers": lambda path: f"# mpv EDL v0\n{path}\n".encode(),
    "no duration": lambda path: b"#EXTM3U\n#EXT-X-TARGETDURATION:0\n#EXTINF:0,\n/nothing.ts\n",
}
# With sanitizers freed memory is kept.
MEMORY_NOISE = 40 if "asan" not in os.environ["ORVANE_BUILD"] else 2048
THREAD_NOISE = 12
DESCRIPTOR_NOISE = 24
# Seconds, for what the program has started, once it has ended.
ENDS_WITHIN = 10


class ChaosSite(LiveSite):
    """Some of its resources are other bytes than they should be."""

    bodies: dict[str, str] = {}

    def answer_otherwise(self, handler) -> bool:
        name = handler.path.strip("/").split("/")[1] if handler.path.startswith("/hls/") else ""
        kind = self.bodies.get(name)
        if kind is None:
            return False
        handler.answer(200, "application/vnd.apple.mpegurl", BODIES[kind](handler.path))
        return True


class Weather:
    """Changes what the site does."""

    def __init__(self, site: ChaosSite):
        self._site = site
        self.changes = 0

    def change(self) -> None:
        channel = random.choice(list(self._site.channels.values()))
        self._clear(channel)
        random.choice((self._clear, self._clear, self._fault, self._fault, self._body, self._freeze, self._stop))(channel)
        self.changes += 1

    def _clear(self, channel: Channel) -> None:
        channel.faults.clear()
        channel.ends, channel.frozen_at = False, None
        self._site.bodies.pop(channel.handle, None)

    def _fault(self, channel: Channel) -> None:
        channel.faults[random.choice(RESOURCES)] = random.choice(FAULTS)

    def _body(self, channel: Channel) -> None:
        self._site.bodies[channel.handle] = random.choice(list(BODIES))

    def _freeze(self, channel: Channel) -> None:
        channel.frozen_at = time.monotonic()

    def _stop(self, channel: Channel) -> None:
        channel.ends = True
        if random.random() < 0.2:
            self._site.die()
            self._site.revive()


@dataclass
class Held:
    """What the program holds at one moment; the least of several is what it needs."""

    memory: float
    threads: int
    descriptors: int

    @staticmethod
    def by(pid: int) -> "Held":
        return Held(own_memory_mib(pid), threads(pid), len(os.listdir(f"/proc/{pid}/fd")))

    @staticmethod
    def least(samples: list["Held"]) -> "Held":
        return Held(min(s.memory for s in samples), min(s.threads for s in samples),
                    min(s.descriptors for s in samples))


def zombies(pid: int) -> list[str]:
    return [command for _, command in descendants(pid) if "<defunct>" in command]


class Chaos:
    def __init__(self, site: ChaosSite, program: Program):
        self._weather = Weather(site)
        self._program = program
        self._verbs = [["--next"], ["--next"], ["--previous"], ["--mute"], ["--toggle-ghost"],
                       *(["--play", c] for c in ("alarabiya", "alhadath", "aljazeera"))]
        self._actions = 0

    def _act(self) -> None:
        binary = f"{os.environ['ORVANE_BUILD']}/orvane"
        subprocess.run([binary, *random.choice(self._verbs)], env=self._program.environment, timeout=60, check=False,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._actions += 1

    def minute(self) -> tuple[Held, str]:
        """Returns what the program held and a line of the table."""
        pid = self._program.process.pid
        samples: list[Held] = []
        actions, changes = self._actions, self._weather.changes
        end = time.monotonic() + 60
        while (second := time.monotonic()) < end:
            self._weather.change()
            while time.monotonic() < min(second + 1, end):
                self._act()
                time.sleep(random.uniform(0, 0.8))
            self._program.is_running()
            samples.append(Held.by(pid))
        held = Held.least(samples)
        line = (f"{self._actions - actions:7} {self._weather.changes - changes:6} {held.memory:10.0f}"
                f" {max(s.memory for s in samples):8.0f} {held.threads:7} {held.descriptors:11}"
                f" {len(descendants(pid)):8} {len(zombies(pid)):7}")
        return held, line


def judged(held: list[Held]) -> str:
    """Returns what has grown; empty if nothing has. The first minute fills caches."""
    if len(held) < 3:
        return ""
    before, after = held[1], Held.least(held[-2:])
    grown = {"memory": after.memory - before.memory > MEMORY_NOISE,
             "threads": after.threads - before.threads > THREAD_NOISE,
             "descriptors": after.descriptors - before.descriptors > DESCRIPTOR_NOISE}
    return ", ".join(name for name, has in grown.items() if has)


def run(minutes: int) -> int:
    with tempfile.TemporaryDirectory() as folder, ChaosSite(pathlib.Path(folder)) as site, \
            Desktop("1280x720", compositor=True) as desktop, \
            Program(desktop, f"{os.environ['ORVANE_BUILD']}/orvane", site.origin) as program:
        program.wait_for("playing")
        chaos = Chaos(site, program)
        print("minute actions faults memory/MiB  highest threads descriptors children zombies", flush=True)
        held: list[Held] = []
        for minute in range(1, minutes + 1):
            now, line = chaos.minute()
            held.append(now)
            print(f"{minute:6} {line}", flush=True)
        children = descendants(program.process.pid)
        left_as_zombies = zombies(program.process.pid)
        code = program.quit()
        left = ""
        try:
            wait_for_ends(children, ENDS_WITHIN)
        except Timeout as problem:
            left = str(problem)
        alarm = "Sanitizer" in program.log() or "runtime error:" in program.log()
    print(f"ended with {code}; left behind: {left or 'nothing'}; grown: {judged(held) or 'nothing'}")
    return int(bool(code or left or left_as_zombies or alarm or judged(held)))


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/chaos", description=__doc__)
    parser.add_argument("minutes", type=int, metavar="MINUTES")
    parser.add_argument("--seed", type=int, default=int(time.time()), help="of the random numbers; default: the time")
    options = parser.parse_args()
    random.seed(options.seed)
    print(f"chaos: seed {options.seed}", file=sys.stderr)
    return run(options.minutes)


if __name__ == "__main__":
    sys.exit(main())
