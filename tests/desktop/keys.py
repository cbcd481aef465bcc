# SPDX-License-Identifier: GPL-3.0-or-later
"""Every key, pressed by its position on the keyboard, with three layouts, in and outside ghost mode."""

import contextlib
import unittest

from Xlib import X
from Xlib.display import Display

from case import SiteCase
from citizen import SCREEN_SAVER, FakeDesktop
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


QUESTION = "Orvane: Ghost Mode"


@contextlib.contextmanager
def lock_screen(desktop):
    """Another client that has the keyboard to itself meanwhile; yields a function that returns its next key."""
    client = Display(desktop.display)
    grab = client.screen().root.grab_keyboard(False, X.GrabModeAsync, X.GrabModeAsync, X.CurrentTime)
    assert grab == X.GrabSuccess

    def next_key() -> int:
        while (event := client.next_event()).type != X.KeyRelease:
            pass
        return event.detail

    try:
        yield next_key
    finally:
        client.close()


class Keys(SiteCase):
    def open(self, **variables):
        """Starts the window probe with the four channels of the site as favourites; one of them plays."""
        program = self.start("window_probe", **variables)
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

    def press_answer(self, right: int):
        """Presses the button of the question this far from its right edge."""
        x, y, width, height = self.desktop.frame(self.desktop.window(QUESTION))
        self.desktop.click(x + width - right, y + height - 28)
        wait_until(lambda: not self.desktop.windows(QUESTION), "the end of the question")

    def test_in_own_windows(self):
        program = self.open()
        desktop = self.desktop
        # The keys of the menus act in every window.
        desktop.key("ctrl+n")
        settings = desktop.window("Orvane Settings")
        desktop.key(US["m"])
        program.wait_for_preferences(isMuted=True)
        x, y, _, _ = desktop.frame(settings)
        # A key that plays opens no window; the desktop is told what plays, and closing ends it.
        desktop.close(program.window())
        wait_until(lambda: not program.is_shown(), "a hidden window")
        desktop.key(FAVOURITE_KEYS[1])
        program.wait_for_preferences(lastChannelID=CHANNELS[1])
        self.assertFalse(program.is_shown())
        player = ("playerctl", "--player=orvane")
        wait_until(lambda: desktop.run(*player, "status").strip() == "Playing", "a player that plays")
        desktop.run(*player, "stop")
        program.wait_for_preferences(lastChannelID="")
        program.tell("show")
        desktop.activate(settings)
        # The line under the field, with its button.
        desktop.click(x + 418, y + 166)
        program.wait_for_preferences(shortcutsInTextFields=False)
        desktop.key(US["m"], US["q"], SPACE, ESCAPE)
        desktop.close(settings)
        wait_until(lambda: not desktop.windows("Orvane Settings"), "the end of the settings")
        self.assertIs(program.preferences()["isMuted"], True)
        self.assertEqual(program.frame()[2:], (480, 314))

        desktop.activate(program.window())
        desktop.key("ctrl+comma")
        desktop.window("Orvane Settings")
        desktop.key("ctrl+q")
        self.assertEqual(program.wait_for_end(), 0)

    def allow_in_settings(self, program):
        self.desktop.activate(program.window())
        self.desktop.key(US[","])
        settings = self.desktop.window("Orvane Settings")
        x, y, _, _ = self.desktop.frame(settings)
        self.desktop.click(x + 30, y + 270)
        self.program.wait_for_preferences(shortcutsInGhostMode=True)
        self.desktop.close(settings)

    def press_while_locked(self, services):
        """Presses keys into lock screens that announce themselves, and into one that only takes the keyboard."""
        program = self.program
        for order in ("lock", "blank"):
            for line in (order, f"un{order}"):
                count = program.log().count("the session is ")
                services.tell(line)
                wait_until(lambda n=count: program.log().count("the session is ") > n, line)
                if line == order:
                    self.desktop.key(US["m"], US["q"])
        with lock_screen(self.desktop) as next_key:
            self.desktop.key(US["m"], US["q"])
            self.assertEqual([next_key(), next_key()], [US["m"], US["q"]])
        self.desktop.key(DOWN, UP)
        wait_until(lambda: abs(program.preferences().get("volume", 0) - 1) < 0.001, "the keys after those")
        self.assertNotIn("isMuted", program.preferences())

    def test_in_another_program(self):
        services = FakeDesktop(self.desktop, SCREEN_SAVER, "org.freedesktop.login1")
        program = self.open(DBUS_SYSTEM_BUS_ADDRESS=self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"],
                            QT_LOGGING_RULES="orvane.*=true")
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
        # Nothing but Escape counts before the user has allowed it, or after a refusal.
        self.desktop.window(QUESTION)
        for refuse in (lambda: None, lambda: self.press_answer(130)):
            self.leave_for(backdrop)
            refuse()
            self.assertEqual(program.tell("focus"), "elsewhere")
            press_elsewhere(US["m"], 11, DOWN)
            self.desktop.key(ESCAPE)
            self.program.wait_for_preferences(ghostModeEnabled=False)
            self.assertNotIn("isMuted", program.preferences())
            self.assertNotIn("volume", program.preferences())
            program.tell("ghost on")
            self.program.wait_for_preferences(ghostModeEnabled=True)
        self.assertIs(program.preferences()["shortcutsInGhostMode"], False)
        self.assertFalse(self.desktop.windows(QUESTION), "it asks once")
        self.allow_in_settings(program)
        self.leave_for(backdrop)
        self.press_while_locked(services)
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
