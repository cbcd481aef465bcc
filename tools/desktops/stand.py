# SPDX-License-Identifier: GPL-3.0-or-later
"""What the checks use: the program and another program's window on a desktop, a typist, what the screen shows."""

from __future__ import annotations

import contextlib
import json
import os
import pathlib
import shutil
import subprocess
import time
from typing import Callable

from PIL import Image

from tools.backdrop import Backdrop
from tools.desktops.session import Session
from tools.program import Program
from tools.waiting import DEADLINE, Timeout, wait_until

OK = "ok"
# What a check says where it has nothing to check.
NOTHING = "-"
GREEN = (0, 170, 0)
# The X server's codes of letters that are no shortcuts of the program: e r t y u i o p, a s d h j k l, z x c v b.
LETTERS = [*range(26, 34), *range(38, 41), *range(43, 47), *range(52, 57)]
# Seconds between two letters, as a quick typist has them.
LETTER = 0.04
# Seconds in which nothing may move any more.
AT_REST = 0.4

Frame = tuple[int, int, int, int]


def is_green(pixel) -> bool:
    return max(abs(a - b) for a, b in zip(pixel, GREEN)) < 12


class Stand:
    """A desktop during one check. Use as a context manager, which ends the programs and forgets their settings."""

    def __init__(self, desktop: Session):
        self.desktop = desktop
        self._stack = contextlib.ExitStack()
        self._build = pathlib.Path(os.environ["ORVANE_BUILD"])

    def __enter__(self) -> "Stand":
        shutil.rmtree(self._settings(), ignore_errors=True)
        # A window that appears under the pointer may get the focus for that alone.
        self.desktop.point(60, self.desktop.size[1] // 2)
        return self

    def __exit__(self, *_) -> None:
        self.desktop.button("mouseup", "1")
        self._stack.close()
        self.desktop.hide_panel()

    def _settings(self) -> pathlib.Path:
        return pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"]) / "orvane"

    # Programs

    def end(self, program: Program) -> None:
        """Ends it, as some checks need another one then."""
        code = program.quit()
        assert code == 0, f"ended with {code}"

    def start(self, binary: str = "orvane", *arguments: str, **variables: str) -> Program:
        """Returns the program when its window is shown. There is no site: it opens a channel in vain."""
        command = str(self._build / binary)
        program = self._stack.enter_context(Program(self.desktop, command, "", arguments, **variables))
        program.wait_for("window-shown")
        program.window()
        return program

    def start_at(self, frame: Frame, **settings) -> None:
        """Has the next start find this frame, and more, in its settings."""
        self._settings().mkdir(parents=True, exist_ok=True)
        settings["windowFrame"] = "{{%d, %d}, {%d, %d}}" % frame
        (self._settings() / "preferences.json").write_text(json.dumps(settings), encoding="ascii")

    def command(self, *arguments: str) -> None:
        """Runs a second start, which sends a command to the program that `start` has started."""
        command = [str(self._build / "orvane"), *arguments]
        try:
            subprocess.run(command, env=self.desktop.environment, check=True, capture_output=True, timeout=DEADLINE)
        except (subprocess.TimeoutExpired, subprocess.CalledProcessError) as problem:
            raise AssertionError(f"a second start: {problem}") from None

    def media(self, method: str) -> None:
        """Commands the player as a key of a keyboard for media does."""
        self.desktop.run("playerctl", "--player=orvane", method)

    def panel(self) -> int:
        """Shows a panel along the lower edge; returns its upper edge when the desktop knows of it."""
        before = self.desktop.usable_area()
        top = self.desktop.show_panel()
        wait_until(lambda: self.desktop.usable_area() != before, "the room of the panel", 2)
        return top

    def backdrop(self, full_screen: bool = False, wayland: bool = False) -> Backdrop:
        """Returns another program's window, as large as the screen, that has the keyboard focus."""
        # Beside the pointer, which some sessions paint.
        strip = (90, 100, 90, 200)
        wait_until(lambda: self.covered(strip) < 1, "the end of the former one")
        backdrop = self._stack.enter_context(Backdrop(self.desktop, GREEN, full_screen, wayland))
        wait_until(lambda: self.covered(strip) == 1, "the other program's window")
        self.focus(backdrop)
        return backdrop

    def focus(self, backdrop: Backdrop) -> None:
        """Gives the other program the keyboard focus by a click beside the player."""
        self.desktop.click(60, self.desktop.size[1] // 2)
        if not self.desktop.has_window_manager:
            self.desktop.run("xdotool", "windowfocus", backdrop.window)
        before = len(backdrop.keys())

        def gets_keys() -> bool:
            self.desktop.key(LETTERS[0])
            return len(backdrop.keys()) > before

        wait_until(gets_keys, "the focus of the other program")
        # All of these keys have arrived before anything is counted.
        settled(lambda: len(backdrop.keys()))

    # Windows and the screen

    def frame(self, program: Program) -> Frame:
        """Returns the frame of the player window when nothing moves it any more."""
        return settled(program.frame)

    def covered(self, frame: Frame) -> float:
        """Returns the share of a frame on the screen in which the other program's colour is."""
        x, y, width, height = frame
        picture = self.desktop.screenshot().crop((x, y, x + width, y + height)).resize((32, 18), Image.NEAREST)
        return sum(1 for pixel in picture.getdata() if is_green(pixel)) / (32 * 18)

    def is_vanished(self, frame: Frame) -> bool:
        """Whether the other program is seen in the frame, save for the pointer, which some sessions paint."""
        return self.covered(frame) > 0.97

    def middle(self, program: Program) -> tuple[int, int]:
        """Returns a place in the picture without text or buttons."""
        x, y, width, height = program.frame()
        return x + width // 2, y + height // 2 - 70


def settled(read: Callable):
    """Returns the value when it has been the same for a moment."""
    since, last = time.monotonic(), read()

    def is_settled() -> bool:
        nonlocal since, last
        now = read()
        if now != last:
            since, last = time.monotonic(), now
        return time.monotonic() - since > AT_REST

    wait_until(is_settled, lambda: f"an end of the changes, now {last}")
    return last


def corner(area: Frame) -> Frame:
    """Returns the player's first frame in a usable area."""
    x, y, width, height = area
    return x + width - 20 - 480, y + height - 20 - 314, 480, 314


def moved(now: Frame, wanted: Frame) -> str:
    """Returns in words how a frame differs, "" if it does not."""
    if now == wanted:
        return ""
    by = (now[0] - wanted[0], now[1] - wanted[1])
    size = "" if now[2:] == wanted[2:] else f"{now[2]}x{now[3]} instead of {wanted[2]}x{wanted[3]}"
    place = "" if by == (0, 0) else f"off by {by[0]},{by[1]}"
    return ", ".join(text for text in (place, size) if text)
