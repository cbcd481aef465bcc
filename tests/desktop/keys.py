# SPDX-License-Identifier: GPL-3.0-or-later
"""Every key, pressed by its position on the keyboard, with three layouts, in and outside ghost mode."""

import unittest

from case import SiteCase
from tools.backdrop import Backdrop
from tools.program import wait_for_standstill
from tools.waiting import wait_until

COLOUR = (0, 170, 0)
CHANNELS = ["alarabiya", "alhadath", "aljazeera", "aljazeeralive"]
FAVOURITES = (CHANNELS * 3)[:9]
# The codes of the keys 1, 2, 3, 4, 6, 5, =, 9 and 7 of a US keyboard.
FAVOURITE_KEYS = [10, 11, 12, 13, 15, 14, 21, 18, 16]
EIGHT, ZERO, ESCAPE, SPACE = 17, 19, "Escape", 65
UP, LEFT, RIGHT, DOWN = 111, 113, 114, 116
# The codes of the letters.
US = {"q": 24, "g": 42, "m": 58, "f": 41, ",": 59}
LAYOUTS = {"us": US, "fr": US | {"q": 38, "m": 47, ",": 58}, "ara": US}


class Keys(SiteCase):
    def open(self):
        """Starts the window probe with the four channels of the site as favourites; one of them plays."""
        program = self.start("window_probe")
        program.tell("favourites " + " ".join(FAVOURITES))
        program.wait_for("error")
        self.desktop.activate(program.window())
        return program

    def press_favourites(self):
        """Presses the key of each favourite; neighbours are different channels."""
        for key, channel in zip(FAVOURITE_KEYS, FAVOURITES):
            self.desktop.key(key)
            self.program.wait_for_preferences(lastChannelID=channel)
        self.desktop.key(EIGHT, ZERO)  # These have no favourite.

    def press_arrows(self):
        """Presses the arrows, starting at the last favourite."""
        for key, channel in ((RIGHT, 1), (RIGHT, 2), (LEFT, 1), (LEFT, 0), (LEFT, 3), (RIGHT, 0)):
            self.desktop.key(key)
            self.program.wait_for_preferences(lastChannelID=CHANNELS[channel])
        for key, volume in ((DOWN, 0.9), (DOWN, 0.8), (UP, 0.9), (UP, 1.0)):
            self.desktop.key(key)
            wait_until(lambda v=volume: abs(self.program.preferences().get("volume", 1) - v) < 0.001, f"volume {volume}")

    def press_mute(self, letters):
        for muted in (True, False):
            self.desktop.key(letters["m"])
            self.program.wait_for_preferences(isMuted=muted)

    def press_space(self):
        """Pauses and resumes."""
        self.wait_for_picture("AlArabiya")
        self.desktop.key(SPACE)
        wait_for_standstill(self.program)
        self.desktop.key(SPACE)
        self.wait_for_picture("AlArabiya")

    def press_comma(self, letters):
        self.desktop.key(letters[","])
        self.desktop.close(self.desktop.window("Orvane Settings"))
        wait_until(lambda: not self.desktop.windows("Orvane Settings"), "the end of the settings")
        self.desktop.activate(self.program.window())

    def leave_for(self, backdrop):
        backdrop.raise_()
        # Qt waits for the focus to come back before it reports that it has gone.
        wait_until(lambda: self.program.tell("focus") == "elsewhere", "the focus in the other program")

    def test_every_key_on_three_layouts(self):
        program = self.open()
        frame = program.frame()
        for layout, letters in LAYOUTS.items():
            self.desktop.run("setxkbmap", layout)
            self.press_favourites()
            self.press_arrows()
            self.press_space()
            self.press_mute(letters)
            for key in (letters["f"], ESCAPE):
                self.desktop.key(key)
                wait_until(lambda: program.frame() == (0, 0, 1280, 720), f"full screen by {key}, {layout}")
                self.desktop.key(key)
                wait_until(lambda: program.frame() == frame, f"back by {key}, {layout}")
            self.press_comma(letters)
            self.desktop.key(letters["g"])
            self.program.wait_for_preferences(ghostModeEnabled=True)
            self.desktop.key(letters["f"], ESCAPE)  # F does nothing in ghost mode.
            self.program.wait_for_preferences(ghostModeEnabled=False)
            self.assertEqual(program.frame(), frame)
            # With a modifier it is a different key.
            for modifier in ("shift", "ctrl", "alt", "super"):
                self.desktop.key(f"{modifier}+{letters['m']}")
            self.desktop.key("Caps_Lock", letters["m"], letters["q"], "Caps_Lock", DOWN)
            wait_until(lambda: program.preferences()["volume"] < 0.95, "the key after those")
            self.assertIs(program.preferences()["isMuted"], False)
            self.desktop.key(UP)
        self.desktop.key(LAYOUTS["ara"]["q"])
        self.assertEqual(program.wait_for_end(), 0)

    def test_in_another_program(self):
        program = self.open()
        backdrop = self.enterContext(Backdrop(self.desktop, COLOUR))
        backdrop.raise_()

        def press_elsewhere(*keys):
            self.desktop.key(*keys)
            wait_until(lambda: backdrop.keys()[-len(keys):] == list(keys), f"{keys} in the other program")

        # Outside ghost mode no key counts. A key that is pressed later in the player window arrives later.
        press_elsewhere(US["m"], 11, DOWN)
        self.desktop.activate(program.window())
        self.desktop.key(US["g"])
        self.program.wait_for_preferences(ghostModeEnabled=True)
        self.assertNotIn("isMuted", program.preferences())
        self.assertNotIn("volume", program.preferences())
        self.leave_for(backdrop)
        for layout, letters in LAYOUTS.items():
            self.desktop.run("setxkbmap", layout)
            before = len(backdrop.keys())
            self.press_favourites()
            self.press_arrows()
            self.press_mute(letters)
            self.press_comma(letters)
            expected = FAVOURITE_KEYS + [EIGHT, ZERO, RIGHT, RIGHT, LEFT, LEFT, LEFT, RIGHT, DOWN, DOWN, UP, UP]
            expected += [letters["m"]] * 2 + [letters[","]]
            wait_until(lambda n=before, h=expected: backdrop.keys()[n:] == h, "all of them in the other program")
            self.leave_for(backdrop)
        self.desktop.run("setxkbmap", "us")

        # A key that is held down toggles once; an arrow repeats.
        held = len(backdrop.keys())
        with self.desktop.hold(US["m"]):
            self.program.wait_for_preferences(isMuted=True)
            while len(backdrop.keys()) < held + 6:
                self.assertIs(program.preferences()["isMuted"], True)
        with self.desktop.hold(DOWN):
            wait_until(lambda: program.preferences()["volume"] < 0.65, "a volume that falls on")

        # After ghost mode, keys in other programs no longer count.
        self.desktop.key(ESCAPE)
        self.program.wait_for_preferences(ghostModeEnabled=False)
        press_elsewhere(US["g"], US["q"])
        self.assertIsNone(program.process.poll())
        self.assertIs(program.preferences()["ghostModeEnabled"], False)
        self.assertEqual(program.quit(), 0)


if __name__ == "__main__":
    unittest.main()
