# SPDX-License-Identifier: GPL-3.0-or-later
"""The settings window with real pointer and keyboard: a custom channel from its address to the picture, and its
removal."""

import subprocess
import unittest

from case import TrayCase
from tools.waiting import wait_until

WIDTH, HEIGHT = 520, 440
# Positions of controls in pixels from the lower left corner of the window; of rows in a list that is scrolled to
# its end.
INPUT = (290, 300)
RESOLVE = (465, 300)
ADD_CHANNEL = (442, 219)
PREVIEW = (200, 240)
FIRST_REMOVE = (435, 95)
LAST_CHANNEL = (40, 83)
LAST_STAR = (466, 83)
STAR_COLOUR = (214, 125, 0)


def is_near(pixel, colour) -> bool:
    return all(abs(a - b) < 40 for a, b in zip(pixel, colour))


class Settings(TrayCase):
    def setUp(self):
        super().setUp()
        self.trust_the_site()

    def place(self, point) -> tuple[int, int]:
        x, y, width, height = self.desktop.frame(self.window)
        self.assertEqual((width, height), (WIDTH, HEIGHT))
        return x + point[0], y + height - point[1]

    def click(self, point):
        self.desktop.click(*self.place(point))

    def pixel(self, point):
        return self.desktop.pixel(*self.place(point))

    def custom_channels(self) -> str:
        return self.program.preferences().get("customChannels", "[]")

    def copy(self, text: str):
        """Puts the text on the clipboard."""
        command = ["xclip", "-selection", "clipboard", "-quiet"]
        clipboard = self.desktop.background(command, stdin=subprocess.PIPE, text=True)
        clipboard.stdin.write(text)
        clipboard.stdin.close()
        wait_until(lambda: self.desktop.run("xclip", "-selection", "clipboard", "-out") == text, "the clipboard")

    def test_custom_channel(self):
        self.start_tint2()
        program = self.start()
        program.wait_for("playing")
        self.copy(f"{self.site.origin}/@AlHadath/videos")

        self.open_tray_menu()
        self.desktop.key(*["Up"] * 5, "Return")  # "Add Channel..."
        self.window = self.desktop.window("Orvane Settings")
        wait_until(lambda: min(self.pixel(INPUT)) > 240, "the field")
        background = self.pixel(PREVIEW)
        self.click(INPUT)
        self.desktop.key("ctrl+v")
        self.click(RESOLVE)
        wait_until(lambda: self.pixel(PREVIEW) != background, "the preview")
        self.assertEqual(self.custom_channels(), "[]")
        self.click(ADD_CHANNEL)
        wait_until(lambda: '"AlHadath"' in self.custom_channels(), "the channel")
        self.assertIn("قناة AlHadath", self.custom_channels())

        # The menu has it after the other channels.
        self.open_tray_menu()
        self.desktop.key(*["Up"] * 6, "Return")
        self.wait_for_channel("AlHadath", "custom_alhadath")

        # In the list of channels it is the last; there it becomes a favourite and is hidden from the menu.
        self.desktop.activate(self.window)
        self.desktop.key("ctrl+shift+Tab", "ctrl+shift+Tab")
        wait_until(lambda: is_near(self.pixel((466, 290)), STAR_COLOUR), "the channels")
        self.desktop.point(*self.place((250, 200)))
        self.desktop.button("click", "--repeat", "20", "5")
        self.click(LAST_STAR)
        wait_until(lambda: is_near(self.pixel(LAST_STAR), STAR_COLOUR), "a full star")
        wait_until(lambda: program.preferences().get("favoriteChannelIDs", [""])[-1] == "custom_alhadath", "a favourite")
        self.click(LAST_CHANNEL)
        wait_until(lambda: "custom_alhadath" not in program.preferences().get("enabledChannelIDs", []), "hidden")

        self.desktop.key("ctrl+Tab", "ctrl+Tab")
        wait_until(lambda: self.pixel(FIRST_REMOVE) != background, "its row")
        self.click(FIRST_REMOVE)
        wait_until(lambda: self.custom_channels() == "[]", "its removal")
        # It goes on playing.
        self.assertEqual(program.preferences()["lastChannelID"], "custom_alhadath")
        self.quit_cleanly()


if __name__ == "__main__":
    unittest.main()
