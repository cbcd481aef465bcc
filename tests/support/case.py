# SPDX-License-Identifier: GPL-3.0-or-later
"""What every test of the built program on a desktop needs."""

import os
import pathlib
import shutil
import tempfile
import time
import unittest

from desktop import Desktop, Program, descendants, wait_until
from livesite import LiveSite, shows

BUILD = os.environ["ORVANE_BUILD"]
RESULTS = pathlib.Path(os.environ.get("ORVANE_TEST_RESULTS", "results"))
# The program leaves after 0.4 s at the latest; a way out that waits for a server takes far longer than
# this, on however busy a machine.
QUIT_LIMIT = 5.0


class DesktopCase(unittest.TestCase):
    desktop: Desktop
    program: Program

    def start(self, binary: str, site: str = "", **variables) -> Program:
        self.program = Program(self.desktop, f"{BUILD}/{binary}", site, **variables)
        self.enterContext(self.program)
        self.addCleanup(self.keep_evidence)
        return self.program

    def keep_evidence(self):
        """On failure the screen and the log stay."""
        outcome = self._outcome.result
        if not any(test is self for test, _ in outcome.failures + outcome.errors):
            return
        kept = RESULTS / self.id()
        kept.mkdir(parents=True, exist_ok=True)
        self.desktop.screenshot().save(kept / "screen.png")
        shutil.copy(self.desktop.folder / "program.log", kept)
        print("milestones:", self.program.milestones())
        print(f"the screen and the log are in {kept}")

    def quit_cleanly(self):
        """Quits as a session manager would: at once, with exit code 0, leaving nobody behind."""
        started = [pid for pid, _ in descendants(self.program.process.pid)]
        before = time.monotonic()
        self.assertEqual(self.program.quit(), 0, self.program.log())
        self.assertLess(time.monotonic() - before, QUIT_LIMIT)
        for pid in started:
            self.assertFalse(pathlib.Path(f"/proc/{pid}").exists(), f"{pid} was left behind")


class SiteCase(DesktopCase):
    """With a live site of its own."""

    site_host = "127.0.0.1"

    def setUp(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.site = self.enterContext(LiveSite(folder, host=self.site_host))
        self.desktop = self.enterContext(Desktop(compositor=True))
        self.channel = self.site.channels["AlArabiya"]

    def start(self, binary: str = "orvane", site: str = "", **variables) -> Program:
        return super().start(binary, site=site or self.site.origin, **variables)


class MenuCase(SiteCase):
    """Whose program's menus are opened."""

    def menu_is_open(self) -> bool:
        """Something white and large is where nothing was."""
        area = self.desktop.screenshot().crop((0, 40, 1280, 380))
        return sum(1 for pixel in area.getdata() if min(pixel) > 225) > 20000

    def wait_for_menu(self):
        wait_until(self.menu_is_open, "an open menu")

    def wait_for_channel(self, handle: str, channel: str):
        """Without the control bar: the pointer is elsewhere."""
        self.program.wait_for_preferences(lastChannelID=channel)
        wait_until(lambda: shows(self.program.picture(), self.site.channels[handle]), f"the picture of {handle}")

    def open_own_menu(self):
        """That of the player window."""
        x, y, width, _ = self.program.frame()
        self.desktop.point(x + width // 2, y + 60)
        self.desktop.button("click", "3")
        self.wait_for_menu()
        # Away from the menu, which opens under it and would begin with what is there.
        self.desktop.point(10, 10)
