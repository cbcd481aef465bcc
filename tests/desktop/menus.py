# SPDX-License-Identifier: GPL-3.0-or-later
"""The tray icon in real trays of both kinds, the two menus, and the menu without a tray."""

import pathlib
import unittest

from case import BUILD, TrayCase
from tools.backdrop import Backdrop
from tools.waiting import wait_until

XFCE_PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="32"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
"""


class Menus(TrayCase):
    def start_xfce_panel(self):
        """Starts a panel with a tray for StatusNotifierItems."""
        folder = pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"]) / "xfce4/xfconf/xfce-perchannel-xml"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "xfce4-panel.xml").write_text(XFCE_PANEL, encoding="ascii")
        return self.desktop.background(["xfce4-panel", "--disable-wm-check"])

    def test_embedding_tray(self):
        panel = self.start_tint2()
        program = self.start()
        program.wait_for("playing")
        icon = self.wait_for_icon()
        self.open_tray_menu()
        # The keys skip the headers: ghost mode first, then the channels.
        self.desktop.key("Down", "Down", "Down", "Return")
        self.wait_for_channel("AlHadath", "alhadath")
        self.wait_for_no_menu()

        self.desktop.point(*icon)
        self.desktop.button("click", "3")
        self.wait_for_menu()
        # An open menu takes the shortcuts' keys, and acts on those that it shows.
        self.desktop.key("m", "g")
        program.wait_for_preferences(ghostModeEnabled=True)
        self.assertNotIn("isMuted", program.preferences())
        question = self.desktop.window("Orvane: Ghost Mode")
        self.desktop.close(question)
        self.wait_for_no_menu()
        self.open_tray_menu()
        self.desktop.key("g")
        program.wait_for_preferences(ghostModeEnabled=False)
        self.wait_for_no_menu()

        # The closed window opens with the next channel.
        self.desktop.close(program.window())
        wait_until(lambda: not program.is_shown(), "a hidden window")
        self.open_tray_menu()
        self.desktop.key("Down", "Down", "Down", "Down", "Return")
        self.wait_for_channel("aljazeera", "aljazeera")

        # The panel crashes, and comes back.
        panel.kill()
        panel.wait()
        wait_until(lambda: not self.icon(), "the end of the tray")
        self.start_tint2()
        self.open_tray_menu()
        self.desktop.key("Up", "Return")
        self.assertEqual(program.wait_for_end(), 0, "the last item quits")
        self.assertEqual(program.preferences()["lastChannelID"], "aljazeera")

    def test_late_tray_on_the_bus(self):
        program = self.start()
        program.wait_for("playing")
        self.assertIsNone(self.icon())
        panel = self.start_xfce_panel()
        icon = self.wait_for_icon()
        self.open_tray_menu()
        self.desktop.key("Down", "Down", "Down", "Return")
        self.wait_for_channel("AlHadath", "alhadath")

        # Here the panel draws the menu.
        self.desktop.point(*icon)
        self.desktop.button("click", "3")
        self.wait_for_menu()
        self.desktop.key("Down", "Down", "Down", "Down", "Return")
        self.wait_for_channel("aljazeera", "aljazeera")

        panel.kill()
        panel.wait()
        wait_until(lambda: not self.icon(), "the end of the tray")
        self.start_xfce_panel()
        self.wait_for_icon()
        self.quit_cleanly()

    def test_without_a_tray(self):
        program = self.start()
        program.wait_for("playing")
        self.open_context_menu()
        self.desktop.key("Down", "Down", "Return")
        self.wait_for_channel("AlHadath", "alhadath")

        # With the keyboard alone.
        self.desktop.activate(program.window())
        self.desktop.key("Menu")
        self.wait_for_menu()
        self.desktop.key("Escape")
        self.wait_for_no_menu()
        self.assertEqual(program.frame()[2:], (480, 314), "Escape closes only the menu")

        # The items that otherwise only the tray's menu has, counted from the end.
        self.open_context_menu()
        self.desktop.key("Up", "Up", "Up", "Return")
        answer = self.desktop.window("Orvane Update")
        wait_until(self.menu_is_open, "the answer, which is as bright as a menu")
        self.desktop.close(answer)
        wait_until(lambda: not self.menu_is_open(), "the end of the answer")
        self.open_context_menu()
        self.desktop.key("Up", "Return")
        self.assertEqual(program.wait_for_end(), 0)

    def test_minimised_player(self):
        """A window manager minimises it all the same; whatever shows it again leaves the keyboard alone."""
        self.start_tint2()
        program = self.start()
        program.wait_for("playing")
        self.wait_for_icon()
        frame, window = program.frame(), program.window()
        backdrop = self.enterContext(Backdrop(self.desktop, (0, 170, 0)))
        backdrop.raise_()

        def start_again():
            self.desktop.run(f"{BUILD}/orvane")

        def choose_in_the_tray():
            self.open_tray_menu()
            self.desktop.key("Down", "Down", "Down", "Return")

        def raise_by_mpris():
            self.desktop.run("gdbus", "call", "--session", "--dest", "org.mpris.MediaPlayer2.orvane", "--object-path",
                             "/org/mpris/MediaPlayer2", "--method", "org.mpris.MediaPlayer2.Raise")

        for bring_back in (start_again, choose_in_the_tray, raise_by_mpris):
            self.desktop.run("xdotool", "windowminimize", window)
            wait_until(lambda: "Iconic" in self.desktop.run("xprop", "-id", window, "WM_STATE"), "a minimised window")
            bring_back()
            wait_until(lambda: program.is_shown() and program.frame() == frame, bring_back.__name__)
            count = len(backdrop.keys())
            self.desktop.key("x")
            wait_until(lambda n=count: len(backdrop.keys()) > n, "the key in the other program")
            x, y = frame[0] + 30, frame[1] + 60
            wait_until(lambda: self.desktop.pixel(x, y)[1] != 170, "the window above the other one")
        states = self.desktop.run("xprop", "-id", window, "_NET_WM_STATE")
        self.assertIn("SKIP_TASKBAR", states)
        self.quit_cleanly()

    def test_sleep_timer(self):
        """The shortest timer, on the real clock."""
        program = self.start("window_probe")
        program.wait_for("window-shown")
        program.tell("sleep 0")
        wait_until(lambda: not program.is_shown(), "a hidden window")
        program.wait_for_preferences(lastChannelID="")
        self.assertIsNone(program.process.poll())
        self.assertEqual(program.quit(), 0)


if __name__ == "__main__":
    unittest.main()
