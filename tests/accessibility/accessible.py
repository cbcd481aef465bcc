# SPDX-License-Identifier: GPL-3.0-or-later
"""What the tests share that read the windows as a screen reader does."""

from case import MenuCase
from tools import accessibility


class Accessible:
    """For a test case with a desktop: each program that it starts gets a screen reader."""

    def start(self, *arguments, **variables):
        accessibility.start_service(self.desktop)
        program = super().start(*arguments, **variables, **accessibility.ALWAYS_ON)
        self.reader = accessibility.ScreenReader(self.desktop, program.process.pid)
        return program


class AccessiblePlayer(Accessible, MenuCase):
    """The player and settings windows, with a site that the settings can resolve channels of."""

    def open(self, **variables):
        self.trust_the_site()
        program = self.start("window_probe", **variables)
        program.wait_for("window-shown")
        program.wait_for("error")
        self.desktop.activate(program.window())
        return program

    def open_settings(self, title="Orvane Settings"):
        self.desktop.key("comma")
        self.desktop.activate(self.desktop.window(title))

    def type_instead(self):
        """In the field for a channel, whose letters are shortcuts, with the keyboard alone."""
        self.desktop.key("m")
        while "Type instead" not in self.reader.focus():
            self.desktop.key("Tab")
        self.desktop.key("Return")
        self.program.wait_for_preferences(shortcutsInTextFields=False)
        self.reader.wait_for_focus("YouTube URL")
