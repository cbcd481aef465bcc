# SPDX-License-Identifier: GPL-3.0-or-later
"""Every control is reached and operated by the keyboard alone. A screen reader tells what has the focus."""

import unittest

from accessible import Accessible, AccessiblePlayer
from tools.waiting import wait_until
from updates import UpdaterCase


class Walk:
    def walk(self, operate=lambda control: None) -> list[str]:
        """Goes through all controls with Tab, and calls `operate` at each; returns them in this order. Fails if one
        that could have the focus is left out."""
        expected = sorted(self.reader.controls())
        first = self.reader.wait_for_focus('"')
        order, now = [], first
        while now not in order:
            order.append(now)
            operate(now)
            self.desktop.key("Tab")
            if len(expected) > 1:
                now = wait_until(lambda: self.moved_from(order[-1]), f"another control than {order[-1]}")
        self.assertEqual(now, first, "the walk is a circle")
        self.assertEqual(sorted(order), expected)
        return order

    def moved_from(self, control: str) -> str | None:
        focus = self.reader.focus()
        return focus if focus and focus != control else None


class Settings(Walk, AccessiblePlayer):
    def operate(self, control: str):
        """Changes the control and changes it back."""
        if "single-key" in control:
            return  # It would turn the keys of this test into shortcuts.
        if control.startswith("check box"):
            keys = ("space", "space")
        elif control.startswith("combo box"):
            keys = ("Down", "Up")
        elif control.startswith("slider"):
            keys = ("Left", "Right")
        else:
            return
        for key in keys:
            before = self.reader.focus()
            self.desktop.key(key)
            wait_until(lambda b=before: self.moved_from(b), f"{key} to change {before}")
        self.reader.wait_for_focus(control)

    def test_settings(self):
        self.open()
        self.desktop.key("ctrl+n")
        self.desktop.activate(self.desktop.window("Orvane Settings"))
        self.type_instead()
        # A channel from its handle to its removal.
        self.desktop.key("at", "A", "l", "H", "a", "d", "a", "t", "h", "Return")
        wait_until(lambda: any("@AlHadath" in line for line in self.reader.tree("Orvane Settings")), "the preview")
        order = self.walk()
        self.assertEqual([name.split('"')[1] for name in order],
                         ["YouTube URL", "Resolve", "Add Channel", "Add Channel"])
        self.desktop.key("Tab", "Tab")
        self.reader.wait_for_focus("push button", "Add Channel")
        self.desktop.key("space")
        wait_until(lambda: "AlHadath" in self.program.preferences().get("customChannels", ""), "the channel")
        self.walk()
        while "Remove" not in self.reader.focus():
            self.desktop.key("Tab")
        self.desktop.key("Return")
        self.program.wait_for_preferences(customChannels="[]")

        self.desktop.key("ctrl+Tab")
        self.reader.wait_for_focus("Language")
        self.walk(self.operate)
        self.desktop.key("ctrl+Page_Down")
        self.reader.wait_for_focus("العربية")
        self.walk(lambda control: self.operate(control) if "Euronews" in control else None)
        self.desktop.key("ctrl+Page_Down")
        self.reader.wait_for_focus("Window Opacity")
        self.walk(self.operate)
        while '"Small"' not in self.reader.focus():
            self.desktop.key("Tab")
        self.desktop.key("space")
        self.program.wait_for_preferences(windowSizePreset=320)
        wait_until(lambda: self.program.frame()[2:] == (320, 224), "the small size")

    def test_arabic(self):
        self.open(LANGUAGE="ar")
        self.open_settings("إعدادات Orvane")
        order = self.walk()
        self.assertEqual([line.split('"')[1] for line in order], [
            "عام", "حسب النظام", "480p", "تشغيل آخر قناة تلقائيًا عند البدء", "حسب النظام", "٥ دقائق",
            "استخدام اختصارات المفتاح الواحد أثناء الكتابة", "في وضع الشبح، استخدام الاختصارات في البرامج الأخرى أيضًا",
            "بدء Orvane عند تسجيل الدخول", "تجهيز القنوات التالية مسبقًا", "تحديث yt-dlp"])
        self.desktop.key("ctrl+Tab", "ctrl+Tab")
        self.reader.wait_for_focus("المظهر")
        order = self.walk()
        self.assertEqual([line.split('"')[1] for line in order],
                         ["المظهر", "عتامة النافذة", "صغير", "متوسط", "كبير", "البقاء فوق النوافذ التي تملأ الشاشة"])


class Others(Walk, AccessiblePlayer):
    def test_retry_and_about(self):
        opened, path = self.catch_opened()
        program = self.open(PATH=path)
        for count, key in enumerate(("Return", "space"), 1):
            self.reader.wait_for_focus('push button "Retry"')
            before = program.count("loading")
            self.desktop.key(key)
            program.wait_for("loading", before + 1)
            program.tell("error again")
            wait_until(lambda: program.count("error") > count, "the error")

        program.tell("about")
        self.desktop.activate(self.desktop.window("About Orvane"))
        self.assertEqual(self.walk(), ['push button "orvane.example"'])
        self.desktop.key("Return")
        wait_until(opened.exists, "the web page")
        self.desktop.key("Escape")
        wait_until(lambda: not self.desktop.windows("About Orvane"), "the end of the window")
        self.assertEqual(program.tell("state"), "window")


class Updater(Walk, Accessible, UpdaterCase):
    def test_updater(self):
        self.open(feed_is_held=True)
        self.reader.wait_for_focus('"Cancel"')
        self.walk()
        self.server.feed_allowed.set()
        self.reader.wait_for_focus('"Download"')
        self.assertEqual(len(self.walk()), 3)
        self.desktop.key("space")
        self.reader.wait_for_focus('"Cancel"')
        self.walk()
        self.server.allowed.set()
        self.reader.wait_for_focus('"Close"')
        self.walk()
        self.desktop.key("space")
        wait_until(lambda: not self.windows(), "the end of the window")


if __name__ == "__main__":
    unittest.main()
