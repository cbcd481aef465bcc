# SPDX-License-Identifier: GPL-3.0-or-later
"""Every key, pressed as on a keyboard: by its place, under three layouts, in and outside ghost mode."""

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
# Where the letters are.
US = {"q": 24, "g": 42, "m": 58, "f": 41, ",": 59}
LAYOUTS = {"us": US, "fr": US | {"q": 38, "m": 47, ",": 58}, "ara": US}


class Keys(SiteCase):
    def open(self):
        """The window probe with the four channels of the site, one of which plays."""
        program = self.start("window_probe")
        program.tell("favourites " + " ".join(FAVOURITES))
        program.wait_for("error")
        self.desktop.activate(program.window())
        return program

    def press_favourites(self):
        """Each by its place; neighbours are different channels."""
        for key, channel in zip(FAVOURITE_KEYS, FAVOURITES):
            self.desktop.key(key)
            self.program.wait_for_preferences(lastChannelID=channel)
        self.desktop.key(EIGHT, ZERO)  # Nobody's.

    def press_arrows(self):
        """From the last favourite on."""
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
        """The picture stands still, and goes on."""
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
        # The toolkit waits a moment for the focus to come back before it believes that it has gone.
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
            self.desktop.key(letters["f"], ESCAPE)  # The first one does nothing.
            self.program.wait_for_preferences(ghostModeEnabled=False)
            self.assertEqual(program.frame(), frame)
            # A modifier makes it another key.
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

        # Outside ghost mode nothing is listened to. What is pressed later in the own window comes later.
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
            heard = FAVOURITE_KEYS + [EIGHT, ZERO, RIGHT, RIGHT, LEFT, LEFT, LEFT, RIGHT, DOWN, DOWN, UP, UP]
            heard += [letters["m"]] * 2 + [letters[","]]
            wait_until(lambda n=before, h=heard: backdrop.keys()[n:] == h, "all of them in the other program")
            self.leave_for(backdrop)
        self.desktop.run("setxkbmap", "us")

        # Held down, a switch flips once and an arrow goes on.
        held = len(backdrop.keys())
        with self.desktop.hold(US["m"]):
            self.program.wait_for_preferences(isMuted=True)
            while len(backdrop.keys()) < held + 6:
                self.assertIs(program.preferences()["isMuted"], True)
        with self.desktop.hold(DOWN):
            wait_until(lambda: program.preferences()["volume"] < 0.65, "a volume that falls on")

        # Its own window and its own menu are no other program.
        self.desktop.key(ESCAPE)
        self.program.wait_for_preferences(ghostModeEnabled=False)
        press_elsewhere(US["g"], US["q"])
        self.assertIsNone(program.process.poll())
        self.assertIs(program.preferences()["ghostModeEnabled"], False)
        self.assertEqual(program.quit(), 0)


if __name__ == "__main__":
    unittest.main()
