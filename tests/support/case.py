# SPDX-License-Identifier: GPL-3.0-or-later
"""Base classes of the tests that run the built program on a desktop."""

import pathlib
import tempfile
import unittest

import outcome
from outcome import BUILD
from tools import tray
from tools.desktop import Desktop
from tools.livesite import LiveSite
from tools.program import Program, wait_for_motion
from tools.waiting import wait_until


class DesktopCase(unittest.TestCase):
    desktop: Desktop
    program: Program

    def start(self, binary: str, site: str = "", **variables) -> Program:
        return self.use(Program(self.desktop, f"{BUILD}/{binary}", site, **variables))

    def use(self, program: Program) -> Program:
        """Makes it the program of this test, and ends it with the test."""
        self.program = self.enterContext(program)
        self.addCleanup(self.keep_evidence)
        return program

    def catch_opened(self) -> tuple[pathlib.Path, str]:
        """Returns a file that gets a line for each address that a program opens, and the PATH for that program."""
        tools = self.desktop.folder / "bin"
        tools.mkdir()
        opened = self.desktop.folder / "opened"
        (tools / "xdg-open").write_text(f'#!/bin/sh\necho "$1" >> "{opened}"\n', encoding="utf-8")
        (tools / "xdg-open").chmod(0o755)
        return opened, f"{tools}:{self.desktop.environment['PATH']}"

    def keep_evidence(self):
        """Keeps it only after a failure."""
        result = self._outcome.result
        if any(test is self for test, _ in result.failures + result.errors):
            outcome.keep_evidence(self.id(), self.desktop)
            print("milestones:", self.program.milestones())

    def quit_cleanly(self):
        outcome.quit_cleanly(self.program)


class SiteCase(DesktopCase):
    """Has a live site of its own."""

    site_host = "127.0.0.1"
    screen = "1280x720"

    def setUp(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.site = self.enterContext(LiveSite(folder, host=self.site_host))
        self.desktop = self.enterContext(Desktop(self.screen, compositor=True))
        self.channel = self.site.channels["AlArabiya"]

    def start(self, binary: str = "orvane", site: str = "", **variables) -> Program:
        return super().start(binary, site=site or self.site.origin, **variables)

    def trust_the_site(self):
        """The resolver of channels checks certificates; the user's settings for yt-dlp apply."""
        settings = pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"]) / "yt-dlp"
        settings.mkdir(parents=True)
        (settings / "config").write_text("--no-check-certificates\n", encoding="ascii")

    def wait_for_picture(self, handle: str):
        wait_for_motion(self.program, self.site.channels[handle])


class MenuCase(SiteCase):
    """Opens menus of the program, on a screen that is high enough for the whole context menu."""

    screen = "1280x1024"

    def menu_is_open(self) -> bool:
        """Whether something large and white covers the screen above the player window."""
        screen = self.desktop.screenshot()
        area = screen.crop((0, 40, screen.width, screen.height - 340))
        return sum(1 for pixel in area.getdata() if min(pixel) > 225) > 20000

    def wait_for_menu(self):
        wait_until(self.menu_is_open, "an open menu")

    def wait_for_no_menu(self):
        wait_until(lambda: not self.menu_is_open(), "a closed menu")

    def wait_for_channel(self, handle: str, channel: str):
        self.program.wait_for_preferences(lastChannelID=channel)
        self.wait_for_picture(handle)

    def open_context_menu(self):
        """Opens the context menu of the player window."""
        x, y, width, _ = self.program.frame()
        self.desktop.point(x + width // 2, y + 60)
        self.desktop.button("click", "3")
        self.wait_for_menu()
        # Away from the menu: it opens under the pointer, which would select an item.
        self.desktop.point(10, 10)


class TrayCase(MenuCase):
    """Chooses from the menu of the tray icon."""

    def start_tint2(self):
        return tray.start_tint2(self.desktop)

    def icon(self) -> tuple[int, int] | None:
        return tray.find_icon(self.desktop)

    def wait_for_icon(self) -> tuple[int, int]:
        return wait_until(self.icon, "the icon in the tray")

    def open_tray_menu(self):
        self.desktop.click(*self.wait_for_icon())
        self.wait_for_menu()
