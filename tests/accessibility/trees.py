# SPDX-License-Identifier: GPL-3.0-or-later
"""The windows as a screen reader sees them, in every state, compared whole with tests/accessibility/trees/.
ORVANE_WRITE_TREES=1 writes those files anew, to be read before they are committed."""

import os
import pathlib
import re
import unittest

from accessible import Accessible, AccessiblePlayer
from tools.waiting import wait_until
from updates import UpdaterCase

FOLDER = pathlib.Path(__file__).parent / "trees"
# The yt-dlp of the machine.
TOOL = re.compile(r'label "(\u200f?)yt-dlp [^"]*"')


class Comparison:
    """Collects the trees of a window, one for each state."""

    def setUp(self):
        super().setUp()
        self.taken = []
        self.maxDiff = None

    def take(self, window: str, state: str, contains: str):
        """Notes the tree of a window once it contains a text."""
        def lines():
            found = self.reader.tree(window)
            return found if any(contains in line for line in found) else None

        tree = wait_until(lines, lambda: f"{state}; it is {self.reader.tree(window)}")
        self.taken += [f"# {state}", *(TOOL.sub(r'label "\1yt-dlp …"', line) for line in tree), ""]

    def compare(self, name: str):
        file = FOLDER / f"{name}.txt"
        text = "\n".join(self.taken)
        if os.environ.get("ORVANE_WRITE_TREES"):
            file.write_text(text, encoding="utf-8")
        self.assertEqual(file.read_text(encoding="utf-8").splitlines(), text.splitlines())


class Windows(Comparison, AccessiblePlayer):
    def test_player(self):
        program = self.open()
        self.take("Orvane", "failed", '"No site"')
        program.tell("loading")
        self.take("Orvane", "loading", "Loading")
        program.tell("playing")
        wait_until(lambda: not any("Loading" in line for line in self.reader.tree("Orvane")), "the picture")
        self.take("Orvane", "playing", "Mute")
        self.desktop.key("m")
        self.take("Orvane", "muted", "Unmute")
        program.tell("ghost on")
        self.take("Orvane", "in ghost mode", "Ghost Mode ON")
        self.take("Keys in ghost mode", "the question about keys", "Allow")
        self.compare("player")

    def test_settings(self):
        self.open()
        self.open_settings()
        self.take("Orvane Settings", "General", "label \"yt-dlp")
        self.desktop.key("ctrl+Tab")
        self.take("Orvane Settings", "Channels", "France 24 EN")
        self.desktop.key("ctrl+Tab")
        self.take("Orvane Settings", "Appearance", "Window Opacity")
        self.desktop.key("ctrl+Tab")
        self.take("Orvane Settings", "Add Channel", "No custom channels yet")
        self.desktop.key("Tab")
        self.reader.wait_for_focus("YouTube URL")
        self.desktop.key("m")
        self.take("Orvane Settings", "after a letter in the field", "Letters are shortcuts here")
        self.desktop.key("Return")
        self.take("Orvane Settings", "resolved nothing", "Please enter")
        self.type_instead()
        self.desktop.key("at", "A", "l", "H", "a", "d", "a", "t", "h", "Return")
        self.take("Orvane Settings", "resolved", '"@AlHadath"')
        self.desktop.key("Tab", "Tab")
        self.reader.wait_for_focus("Add Channel")
        self.desktop.key("space")
        self.take("Orvane Settings", "added", "Added")
        self.compare("settings")

    def test_about(self):
        program = self.open()
        program.tell("about")
        self.take("About Orvane", "about", "Version")
        self.compare("about")


    def test_arabic(self):
        program = self.open(LANGUAGE="ar")
        self.take("Orvane", "failed", '"\u2066No site\u2069"')
        program.tell("loading")
        self.take("Orvane", "loading", "جارٍ تحميل")
        program.tell("ghost on")
        self.take("المفاتيح في وضع الشبح", "the question about keys", "السماح")
        program.tell("ghost off")
        self.desktop.activate(program.window())
        self.open_settings("إعدادات Orvane")
        self.take("إعدادات Orvane", "General", "label \"\u200fyt-dlp")
        self.desktop.key("ctrl+Tab")
        self.take("إعدادات Orvane", "Channels", "France 24 EN")
        self.desktop.key("ctrl+Tab")
        self.take("إعدادات Orvane", "Appearance", "عتامة النافذة")
        self.desktop.key("ctrl+Tab")
        self.take("إعدادات Orvane", "Add Channel", "لم تُضف أي قناة")
        program.tell("about")
        self.take("حول Orvane", "about", "الإصدار")
        self.compare("arabic")


class Updater(Comparison, Accessible, UpdaterCase):
    def test_updater(self):
        self.open(feed_is_held=True)
        self.take("Orvane Update", "searching", "Checking for updates")
        self.server.feed_allowed.set()
        self.take("Orvane Update", "an offer", "What is new")
        self.reader.wait_for_focus('"Download"')
        self.desktop.key("Return")
        self.take("Orvane Update", "downloading", '"Downloading Orvane 2.3" 50')
        self.server.allowed.set()
        self.take("Orvane Update", "downloaded", "has been downloaded")
        self.compare("updater")


if __name__ == "__main__":
    unittest.main()
