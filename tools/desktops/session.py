# SPDX-License-Identifier: GPL-3.0-or-later
"""What the desktops of the table have in common: what they need, how one is started, what it can be asked."""

from __future__ import annotations

import pathlib
import re
import shutil
import subprocess

from tools.desktop import Desktop
from tools.processes import end
from tools.tray import start_tint2
from tools.waiting import Timeout, wait_until

# Seconds. The larger ones read many files at their start.
STARTS_WITHIN = 30


class NoProtocol(Exception):
    """The desktop lacks what a check is about; the text is the name of that."""


class Session(Desktop):
    """One desktop of the table."""

    name = ""
    packages: tuple[str, ...] = ()
    command: list[str] = []
    variables: dict[str, str] = {}
    is_wayland = False
    # Whether windows have places of their own, so that "maximised" and the like mean something.
    has_window_manager = True
    # Whether it has a bus for the system, of which there is none here, and ends or complains without one.
    needs_system_bus = False
    # The height of the strip along the lower edge in which its own panel has a tray; 0: a panel brings one.
    own_tray = 0
    has_tray = True
    # Whether its panel shows the menu of the right button itself, and without the keyboard.
    panel_shows_menus = False
    # By the name of the check: what of X11 it does not heed, where it announces nothing that tells so.
    unheeded: dict[str, str] = {}
    _panel: subprocess.Popen | None = None
    # The upper edge of the one along the lower edge of the screen; 0: there is none.
    _panel_top = 0

    @classmethod
    def is_installed(cls) -> bool:
        return not cls.command or shutil.which(cls.command[0]) is not None

    def start_command(self, command: list[str], **more: str) -> None:
        """Starts the desktop itself; its messages are kept in session.log."""
        # No file of settings, which would outlive this.
        self.environment |= {"GSETTINGS_BACKEND": "memory", "NO_AT_BRIDGE": "1"}
        if self.needs_system_bus:
            self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        with open(self.log, "w", encoding="utf-8") as log:
            self._window_manager = self.background(
                command, env=self.environment | self.variables | more, stdout=log, stderr=log)

    @property
    def log(self) -> pathlib.Path:
        return self.folder / "session.log"

    def wait_for(self, condition, what: str):
        def alive_and():
            ended = self._window_manager.poll()
            assert ended is None, f"{self.name} ended with {ended}: {self.log.read_text(errors='replace')[-300:]}"
            return condition()

        return wait_until(alive_and, what, STARTS_WITHIN)

    def windows(self, title: str) -> list[str]:
        # From mutter 44 on its frames are windows of another program, with the titles of those in them.
        windows = super().windows(title)
        frames = self.run("xdotool", "search", "--class", "^mutter-x11-frames$").split()
        return [window for window in windows if window not in frames]

    def settings(self, path: str, text: str) -> pathlib.Path:
        """Writes a file into the home folder."""
        file = self.folder / "home" / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        file.chmod(0o755)
        return file

    @property
    def size(self) -> tuple[int, int]:
        width, height = self._size.split("x")
        return int(width), int(height)

    def usable_area(self) -> tuple[int, int, int, int]:
        """Returns x, y, width and height of the screen without panels, as the desktop announces it, or else as seen."""
        words = re.findall(r"\d+", self.run("xprop", "-root", "-notype", "_NET_WORKAREA"))
        if len(words) >= 4:
            return tuple(int(word) for word in words[:4])
        width, height = self.size
        return 0, 0, width, self._panel_top or height

    def announces(self, what: str) -> bool:
        """Whether the window manager says that it supports this."""
        return what in self.run("xprop", "-root", "_NET_SUPPORTED")

    def show_panel(self) -> int:
        """Shows one along the lower edge; returns its upper edge."""
        self._panel_top = self.frame(self.start_panel("bottom"))[1]
        return self._panel_top

    def start_panel(self, edge: str) -> str:
        """Starts a panel with a tray; returns its window."""
        self._panel = start_tint2(self, edge)
        try:
            return wait_until(lambda: self.windows("tint2"), "the panel", 4)[0]
        except Timeout:
            raise NoProtocol("_NET_WM_WINDOW_TYPE_DOCK") from None

    def hide_panel(self) -> None:
        if self._panel:
            end(self._panel)
            wait_until(lambda: not self.windows("tint2"), "the end of the panel")
            self._panel = None
            self._panel_top = 0

    def show_workspace(self, number: int) -> None:
        """Counted from 0; there are two at least."""
        self.run("wmctrl", "-n", "2")
        self.run("wmctrl", "-s", str(number))


class X11Session(Session):
    def _start_window_manager(self) -> None:
        self.start_command(self.command)
        self.wait_for(self._has_window_manager, f"{self.name} as window manager")


class WaylandSession(Session):
    """Programs run through XWayland. Input and screenshots are those of the X server around it, in which the whole
    session is one window as large as the screen."""

    is_wayland = True

    def _start_session(self) -> None:
        self._start_window_manager()
        self.environment |= self.wait_for(self.variables_inside, "the session's variables")
        # XWayland starts with its first client.
        self.wait_for(self._has_window_manager, "XWayland's window manager")
        # The session adds up the pointer's movements from its own corner.
        self.move_pointer(-self.size[0], -self.size[1])

    def _start_window_manager(self) -> None:
        arguments = self.arguments()
        self.start_command([*self.command, *arguments])

    def arguments(self) -> list[str]:
        return []

    def script(self, first: str = "") -> str:
        """Returns a command for the session to run, which runs another, tells the session's variables and stays until
        the screen is gone."""
        told = self.folder / "variables"
        text = f'#!/bin/sh\n{first}\nenv >"{told}.new"\nmv "{told}.new" "{told}"\n'
        text += f"exec tail --pid={self.x_server} -f /dev/null\n"
        return str(self.settings("tell-variables", text))

    def variables_inside(self) -> dict[str, str] | None:
        file = self.folder / "variables"
        if not file.exists():
            return None
        told = dict(line.split("=", 1) for line in file.read_text(errors="replace").splitlines() if "=" in line)
        wanted = ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY", "SWAYSOCK")
        return {name: told[name] for name in wanted if name in told}
