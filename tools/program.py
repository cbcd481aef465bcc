# SPDX-License-Identifier: GPL-3.0-or-later
"""The built program, running on a desktop."""

from __future__ import annotations

import json
import os
import pathlib
import signal
import subprocess
import time

from PIL import Image

from tools.channels import Channel
from tools.desktop import Desktop
from tools.images import moves, shows
from tools.processes import descendants, end
from tools.waiting import DEADLINE, wait_until

# Turns off every service that is not on this machine.
OFFLINE = {"ORVANE_GITHUB_API": "", "ORVANE_GITHUB": "", "ORVANE_GITHUB_RAW": "",
           "ORVANE_TELEMETRY": "", "PIP_NO_INDEX": "1"}

BAR_HEIGHT = 44


def launcher_with(mounts: str, binary: str, path: pathlib.Path) -> str:
    """Writes a script to `path` that starts the program after these shell commands, and returns it. Only the program
    sees what they mount."""
    as_root = "" if os.getuid() == 0 else "--map-root-user"
    path.write_text(f"#!/bin/sh\nexec unshare {as_root} --mount sh -e -c '{mounts}\n"
                    f"exec {binary} \"$@\"' orvane \"$@\"\n", encoding="ascii")
    path.chmod(0o755)
    return str(path)


class Program:
    """The built program on a desktop. Use as a context manager, which ends it."""

    def __init__(self, desktop: Desktop, binary: str, site: str = "", arguments=(), **variables: str):
        self.desktop = desktop
        self._timeline = desktop.folder / "timeline"
        self._timeline.unlink(missing_ok=True)
        self._log = open(desktop.folder / "program.log", "w", encoding="utf-8")
        self.environment = desktop.environment | {
            "ORVANE_VIDEO_SITE": site,
            "ORVANE_TIMELINE": str(self._timeline),
        }
        self.environment |= OFFLINE | variables
        self.started = time.monotonic()
        self.process = subprocess.Popen(
            [binary, *arguments], env=self.environment, stdin=subprocess.PIPE,
            stdout=self._log, stderr=subprocess.STDOUT, text=True,
        )
        self._lines_told = 0

    def __enter__(self) -> "Program":
        return self

    def __exit__(self, *_) -> None:
        end(self.process)
        self._log.close()

    def tell(self, line: str) -> str:
        """Sends a command line to the window probe; returns its answer."""
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        self._lines_told += 1

        def answers():
            lines = [x for x in self.log().splitlines() if x.startswith("done ")]
            return lines if len(lines) == self._lines_told else None

        return wait_until(answers, f"an answer to {line}")[-1].removeprefix("done ")

    def log(self) -> str:
        return (self.desktop.folder / "program.log").read_text(encoding="utf-8")

    def _marks(self) -> list[list[str]]:
        """Returns milestone, milliseconds of the monotonic clock, and the detail if there is one, of each."""
        if not self._timeline.exists():
            return []
        text = self._timeline.read_text(encoding="utf-8")
        return [line.split(maxsplit=2) for line in text.splitlines()]

    def milestones(self) -> list[tuple[str, float]]:
        """Returns each with the milliseconds since the program was started."""
        return [(mark[0], float(mark[1]) - self.started * 1000) for mark in self._marks()]

    def said(self, milestone: str) -> str:
        """Returns the detail of the last such milestone."""
        return [" ".join(mark[2:]) for mark in self._marks() if mark[0] == milestone][-1]

    def count(self, milestone: str) -> int:
        return sum(1 for name, _ in self.milestones() if name == milestone)

    def is_running(self) -> bool:
        """Returns True; raises AssertionError when the program has ended."""
        assert self.process.poll() is None, f"the program ended with {self.process.returncode}"
        return True

    def wait_for(self, milestone: str, count: int = 1, deadline: float = DEADLINE) -> float:
        """Waits until the milestone was reached `count` times; returns when, in milliseconds since the start."""

        wait_until(lambda: self.is_running() and self.count(milestone) >= count,
                   lambda: f"{milestone} x {count}; so far: {self.milestones()}", deadline)
        return [at for name, at in self.milestones() if name == milestone][count - 1]

    def windows(self) -> list[str]:
        return self.desktop.windows("Orvane")

    def is_shown(self) -> bool:
        return bool(self.windows())

    def window(self) -> str:
        """Waits for the player window; returns its id."""
        return self.desktop.window("Orvane")

    def frame(self) -> tuple[int, int, int, int]:
        """Returns x, y, width and height of the player window."""
        return self.desktop.frame(self.window())

    def picture(self) -> Image.Image:
        """Returns what the screen shows in the player window."""
        x, y, width, height = self.frame()
        return self.desktop.screenshot().crop((x, y, x + width, y + height))

    def video(self) -> Image.Image:
        """Returns the same without the control bar."""
        picture = self.picture()
        return picture.crop((0, 0, picture.width, picture.height - BAR_HEIGHT))

    def preferences(self) -> dict:
        path = pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "orvane/preferences.json"
        return json.loads(path.read_text(encoding="utf-8")) if path.exists() else {}

    def wait_for_preferences(self, **wanted) -> None:
        """Waits for values in the preferences file, which the program writes with a delay."""
        for key, value in wanted.items():
            wait_until(lambda k=key, v=value: self.preferences().get(k) == v, f"{key}: {value}")

    def children(self) -> list[str]:
        """Returns the command lines of all processes that the program has started, directly or not."""
        return [command for _, command in descendants(self.process.pid)]

    def quit(self) -> int:
        """Ends it as a session manager would; returns the exit code."""
        self.process.send_signal(signal.SIGTERM)
        return self.wait_for_end()

    def wait_for_end(self) -> int:
        """Returns the exit code."""
        return self.process.wait(DEADLINE)


def wait_for_motion(program: Program, channel: Channel, deadline: float = DEADLINE) -> Image.Image:
    """Waits until the channel's moving picture is on the screen with nothing over it; returns the picture."""
    seen: list[Image.Image] = []

    def is_moving() -> bool:
        seen[:] = [*seen[-1:], program.video()]
        return (len(seen) == 2 and seen[0].size == seen[1].size and moves(*seen)
                and all(shows(picture, channel) for picture in seen))

    wait_until(lambda: program.is_running() and is_moving(),
               lambda: f"the moving picture of {channel.handle}; {program.milestones()}", deadline)
    return seen[-1]


def wait_for_standstill(program: Program) -> None:
    """Waits until the picture has not changed for a second."""
    since, last = time.monotonic(), program.video()

    def stands_still() -> bool:
        nonlocal since, last
        now = program.video()
        if now.size != last.size or moves(last, now):
            since, last = time.monotonic(), now
        return time.monotonic() - since > 1

    wait_until(stands_still, "a picture that stands still")
