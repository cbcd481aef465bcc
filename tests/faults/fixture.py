# SPDX-License-Identifier: GPL-3.0-or-later
"""The environment of one row: a desktop, a live site and the built program of its own, with checks of what the
user sees. Each check waits for a condition, and raises if it does not hold in time."""

import contextlib
import json
import pathlib
import tempfile
import time

from outcome import BUILD
from tools.desktop import Desktop
from tools.images import background
from tools.livesite import LiveSite
from tools.program import Program, launcher_with, wait_for_motion
from tools.waiting import wait_until

# An unknown key, which the program must preserve.
UNKNOWN_KEY = {"unknownKey": {"a": [1, "x"]}}


def shortened(text: str) -> str:
    return text if len(text) <= 100 else f"{text[:97]}..."


class Fixture:
    """Use as a context manager; the program starts with `start`."""

    def __init__(self, size: str = "1280x720", site_class=LiveSite):
        self._size = size
        self._site_class = site_class
        self._stack = contextlib.ExitStack()
        self.program: Program | None = None

    def __enter__(self) -> "Fixture":
        try:
            self.folder = pathlib.Path(self._stack.enter_context(tempfile.TemporaryDirectory()))
            self.site = self._stack.enter_context(self._site_class(self.folder))
            self.desktop = self._stack.enter_context(Desktop(self._size))
        except BaseException:
            self._stack.close()
            raise
        self.channel = self.site.channels["AlArabiya"]
        self.preferences = pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"]) / "orvane/preferences.json"
        self.preferences.parent.mkdir()
        # Random input must not start a browser.
        self._tools = self.folder / "tools"
        self._tools.mkdir()
        (self._tools / "xdg-open").write_text("#!/bin/sh\n", encoding="ascii")
        (self._tools / "xdg-open").chmod(0o755)
        self.preferences.write_text(json.dumps(UNKNOWN_KEY), encoding="ascii")
        return self

    def __exit__(self, *_) -> None:
        self._stack.close()

    def start(self, *arguments: str, mounts: str = "", **variables: str) -> Program:
        """`mounts` are shell commands; only the program sees what they mount."""
        binary = f"{BUILD}/orvane"
        if mounts:
            binary = launcher_with(mounts, binary, self.folder / "launcher")
        return self.run(binary, *arguments, **variables)

    def run(self, binary: str, *arguments: str, **variables: str) -> Program:
        path = {"PATH": f"{self._tools}:{self.desktop.environment['PATH']}"}
        self.program = self._stack.enter_context(
            Program(self.desktop, binary, self.site.origin, arguments, **(path | variables)))
        return self.program

    def enter(self, helper):
        """Enters a context manager that ends with the fixture."""
        return self._stack.enter_context(helper)

    def ask(self, *command: str) -> str:
        """Sends a command over the bus, as a panel does; returns the answer."""
        return self.desktop.run("playerctl", "--player=orvane", *command).strip()

    def order(self, *command: str) -> None:
        """Sends a command once the program is on the bus: before that it would be lost."""
        wait_until(lambda: self.ask("status"), "the program on the bus")
        self.ask(*command)

    # What the user sees

    def plays(self, handle: str = "AlArabiya") -> float:
        """Waits for the channel's moving picture; returns how many seconds that took."""
        began = time.monotonic()
        self.program.wait_for("window-shown")
        wait_for_motion(self.program, self.site.channels[handle])
        return time.monotonic() - began

    def error(self, *texts: str, count: int = 1) -> str:
        """Waits for the error overlay and checks its text; returns it."""
        self.program.wait_for("error", count)
        wait_until(lambda: max(background(self.program.picture())) < 64, "the overlay")
        said = self.program.said("error")
        for text in texts:
            assert text in said, f"{text!r} is not in {said!r}"
        return said

    def retry(self) -> str:
        """Clicks the Retry button and waits for the picture."""
        x, y, width, height = self.program.frame()
        self.desktop.click(x + width / 2, y + height / 2 + 57)
        return f"Retry plays after {self.plays():.0f} s"

    def error_then_retry(self, *texts: str, repair) -> str:
        said = self.error(*texts)
        repair()
        return f'"{shortened(said)}"; {self.retry()}'

    def heals_after(self, seconds: float, within: float, repair) -> str:
        """Repairs the fault `seconds` after the first error, and waits for the picture, which must come by itself
        `within` seconds."""
        said = self.error()
        time.sleep(seconds)  # How long the fault lasts is the row's own condition.
        errors, pictures = self.program.count("error"), self.program.count("playing")
        repair()
        began = time.monotonic()
        # Not a rest that is still being played.
        self.program.wait_for("playing", pictures + 1, within)
        self.plays()
        took = time.monotonic() - began
        return f'"{shortened(said)}"; {errors} failures; plays {took:.0f} s after the repair, without a click'

    def plays_again(self, before: str) -> str:
        return f"{before}plays again after {self.plays():.0f} s"

    def other_channel_plays(self) -> str:
        self.order("next")
        return f"the next channel plays after {self.plays('AlHadath'):.0f} s"

    def keeps_settings(self) -> None:
        stored = json.loads(self.preferences.read_text(encoding="utf-8"))
        for key, value in UNKNOWN_KEY.items():
            assert stored.get(key) == value, f"{key} is lost: {stored}"
