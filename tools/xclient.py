# SPDX-License-Identifier: GPL-3.0-or-later
"""What a client of an X server can do: look at the screen and at windows, move the pointer, press keys."""

from __future__ import annotations

import contextlib
import re
import subprocess

from PIL import Image, ImageGrab

from tools.waiting import DEADLINE, Timeout, wait_until


class XClient:
    """Programs run with `environment`. Screenshots, pointer and keys are those of the server at `display`,
    which may be the one around the session."""

    def __init__(self):
        self.display = ""
        self.environment: dict[str, str] = {}

    def run(self, *command: str) -> str:
        """Runs a tool; returns what it prints, also when it fails."""
        try:
            done = subprocess.run(command, env=self.environment, check=False, capture_output=True, text=True,
                                  timeout=DEADLINE)
        except subprocess.TimeoutExpired:
            raise Timeout(f"no answer to {' '.join(command)}") from None
        return done.stdout

    # Windows

    def windows(self, title: str) -> list[str]:
        """Returns the ids of the visible ones."""
        return self.run("xdotool", "search", "--onlyvisible", "--name", f"^{title}$").split()

    def window(self, title: str) -> str:
        return wait_until(lambda: self.windows(title), f"the window {title}")[0]

    def activate(self, window: str) -> None:
        # A window that has just appeared may take no input yet, and then this changes nothing.
        wait_until(lambda: "accepts input or input focus: False" not in self.run("xprop", "-id", window, "WM_HINTS"),
                   f"a window {window} that takes input")
        self.run("xdotool", "windowactivate", "--sync", window)
        # The window manager announces the active window before it gets the keys.
        wait_until(lambda: self.run("xdotool", "getwindowfocus").strip() == window, f"the focus in {window}")

    def close(self, window: str) -> None:
        """Closes it as the button in its frame does."""
        self.run("wmctrl", "-i", "-c", window)

    def frame(self, window: str) -> tuple[int, int, int, int]:
        """Returns x, y, width and height on the screen, without a border of the window's own; raises AssertionError
        if the window is gone."""
        text = self.run("xwininfo", "-id", window)
        labels = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height", "Border width")
        found = [re.search(f"{label}: +(-?\\d+)", text) for label in labels]
        assert all(found), f"the window {window} is gone"
        x, y, width, height, border = (int(number.group(1)) for number in found)
        return x + border, y + border, width, height

    # The screen

    def screenshot(self) -> Image.Image:
        return ImageGrab.grab(xdisplay=self.display).convert("RGB")

    def pixel(self, x: float, y: float) -> tuple[int, int, int]:
        return self.screenshot().getpixel((int(x), int(y)))

    # Input through XTEST: it makes the same events as a real mouse and keyboard

    def _xdotool(self, *arguments: str) -> str:
        environment = self.environment | {"DISPLAY": self.display}
        return subprocess.run(
            ["xdotool", *arguments], env=environment, check=True, capture_output=True, text=True
        ).stdout

    def pointer(self) -> tuple[int, int]:
        values = dict(v.split("=") for v in self._xdotool("getmouselocation", "--shell").split())
        return int(values["X"]), int(values["Y"])

    def move_pointer(self, dx: int, dy: int) -> None:
        self._xdotool("mousemove_relative", "--", str(dx), str(dy))

    def point(self, x: float, y: float) -> None:
        now = self.pointer()
        self.move_pointer(int(x) - now[0], int(y) - now[1])

    def button(self, action: str, *arguments: str) -> None:
        """`action` is "mousedown", "mouseup" or "click"."""
        self._xdotool(action, *arguments)

    def click(self, x: float, y: float) -> None:
        self.point(x, y)
        self.button("click", "1")

    def double_click(self, x: float, y: float) -> None:
        self.point(x, y)
        self.button("click", "--repeat", "2", "--delay", "50", "1")

    def drag(self, x: float, y: float, dx: int, dy: int, arrived, what) -> None:
        """Drags from a place by a distance, in steps small enough for a program to follow, and releases the
        button after `arrived()`, as a user does; `what` describes it for the message."""
        self.point(x, y)
        self.button("mousedown", "1")
        for step in range(1, 21):
            self.point(x + dx * step // 20, y + dy * step // 20)

        def arrives() -> bool:
            if arrived():
                return True
            # A window manager that has taken over the drag only now has missed all movements so far.
            self.move_pointer(-1, 0)
            self.move_pointer(1, 0)
            return False

        wait_until(arrives, what)
        self.button("mouseup", "1")
        wait_until(arrived, what)

    def key(self, *keys: str | int) -> None:
        """Presses one after the other; each is the name of a key symbol or the X server's code of a key."""
        for key in keys:
            self._xdotool("key", str(key))

    @contextlib.contextmanager
    def hold(self, key: int):
        """Holds the key down meanwhile."""
        self._xdotool("keydown", str(key))
        try:
            yield
        finally:
            self._xdotool("keyup", str(key))
