# SPDX-License-Identifier: GPL-3.0-or-later
"""Orvane and mpv, driven in the same way."""

from __future__ import annotations

import contextlib
import json
import os
import pathlib
import select
import subprocess
import time

from screen import Screen
from tools.channels import Channel
from tools.desktop import Desktop
from tools.livesite import LiveSite
from tools.processes import cpu_seconds, threads
from tools.program import Program
from tools.waiting import wait_until

# The picture at the first start, and a place in it that the moving bar does not reach.
PICTURE = (780, 386, 480, 270)
PLACE = (1230, 595)
SCREEN_PLACE = (1240, 470)

# Otherwise mpv searches for a sound device and, without one, decodes no sound, which Orvane does.
MPV = ["mpv", "--no-config", "--no-terminal", "--ao=null", "--no-border", "--tls-verify=no",
       f"--geometry={PICTURE[2]}x{PICTURE[3]}+{PICTURE[0]}+{PICTURE[1]}"]
MPV_GPU = ["--vo=gpu", "--gpu-sw=yes", "--gpu-context=x11egl"]
# Orvane's ids of the site's channels.
IDS = {"AlArabiya": "alarabiya", "AlHadath": "alhadath", "aljazeera": "aljazeera",
       "AljazeeraMubasher": "aljazeeralive"}
FORMAT = "best[height<=480]"


def _descendants(pid: int) -> list[int]:
    """Between the program and yt-dlp stands its guard."""
    found = []
    with contextlib.suppress(OSError):
        for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
            found += (task / "children").read_text(encoding="ascii").split()
    children = [int(child) for child in found]
    return children + [each for child in children for each in _descendants(child)]


def wait_for_ytdlp(pid: int, page: str) -> float:
    """Waits for the end of the yt-dlp that the process starts for the page; returns when."""

    def asks(child: int) -> bool:
        with contextlib.suppress(OSError):
            command = pathlib.Path(f"/proc/{child}/cmdline").read_bytes().split(b"\0")
            return page.encode() in command
        return False

    child = wait_until(lambda: next(filter(asks, _descendants(pid)), None), "yt-dlp")
    handle = os.pidfd_open(child)
    try:
        if not select.select([handle], [], [], 60)[0]:
            raise TimeoutError("yt-dlp did not end")
        return time.monotonic()
    finally:
        os.close(handle)


class Testbed:
    """A desktop with a live site, on which one player at a time plays. Use as a context manager."""

    def __init__(self, folder: pathlib.Path, orvane: pathlib.Path, site: type[LiveSite] = LiveSite):
        self._folder = folder
        self._make_site = site
        self._orvane = str(orvane)
        self._stack = contextlib.ExitStack()

    def __enter__(self) -> "Testbed":
        self.site = self._stack.enter_context(self._make_site(self._folder))
        self.desktop = self._stack.enter_context(Desktop())
        # Every desktop has one; libraries look for a missing one again and again.
        environment = self.desktop.environment
        environment["DBUS_SYSTEM_BUS_ADDRESS"] = environment["DBUS_SESSION_BUS_ADDRESS"]
        self.screen = self._stack.enter_context(Screen(self.desktop.display))
        self.channels = list(self.site.channels.values())
        # A colour that no picture and no window has.
        self.desktop.run("xsetroot", "-solid", "#ff00ff")
        self.desktop.point(5, 5)
        return self

    def __exit__(self, *_) -> None:
        self._stack.close()

    def page(self, channel: Channel) -> str:
        return f"{self.site.origin}/@{channel.handle}/live"

    def stream(self, channel: Channel) -> str:
        """Returns the address that yt-dlp finds on the channel's page."""
        return f"{self.site.origin}/hls/{channel.handle}/480/list.m3u8"

    def orvane(self, **preferences: int | list[str]) -> Program:
        """Starts it without other preferences than these, so that it begins with the first channel of the site."""
        path = pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"]) / "orvane/preferences.json"
        path.unlink(missing_ok=True)
        if preferences:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(json.dumps(preferences), encoding="ascii")
        return Program(self.desktop, self._orvane, self.site.origin)

    def ask(self, program: Program, *arguments: str) -> None:
        """Sends a request to the running Orvane by a second start."""
        subprocess.run([self._orvane, *arguments], env=program.environment, check=True)

    def choose(self, program: Program, channel: Channel) -> float:
        """Opens the channel; returns when the program received the request."""
        before = program.count("loading")
        self.ask(program, "--play", IDS[channel.handle])
        return program.started + program.wait_for("loading", before + 1) / 1000

    def close_player(self, program: Program) -> None:
        """Closes the window, and waits until its player is gone."""
        self.desktop.close(program.window())
        wait_until(lambda: not program.is_shown(), "a hidden window")
        self.wait_for_idle(program.process.pid)

    def wait_for_idle(self, pid: int) -> None:
        """Waits until the process uses no CPU and the number of its threads does not change."""

        def is_idle() -> bool:
            before = threads(pid), cpu_seconds(pid)
            time.sleep(0.3)
            return (threads(pid), cpu_seconds(pid)) == before

        wait_until(is_idle, "a player at rest")

    @contextlib.contextmanager
    def mpv(self, *arguments: str):
        """Runs mpv; yields the process and when it was started."""
        started = time.monotonic()
        with self._running([*MPV, *arguments]) as process:
            yield process, started

    def ffmpeg(self, channel: Channel, *arguments: str) -> contextlib.AbstractContextManager[subprocess.Popen]:
        """Runs an ffmpeg that does the work of these arguments on the channel's stream, and shows nothing."""
        return self._running(["ffmpeg", "-loglevel", "quiet", "-i", self.stream(channel), *arguments,
                              "-f", "null", "-"])

    @contextlib.contextmanager
    def _running(self, command: list[str]):
        process = subprocess.Popen(command, env=self.desktop.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            yield process
        finally:
            process.terminate()
            process.wait()
