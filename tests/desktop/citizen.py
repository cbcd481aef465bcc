# SPDX-License-Identifier: GPL-3.0-or-later
"""The program as a part of its desktop: driven from outside, keeping the screen awake, and back by itself
after the machine or its network was away."""

import pathlib
import re
import subprocess
import unittest

from case import SiteCase
from desktop import Desktop, wait_until
from livesite import shows

FAKE_DESKTOP = pathlib.Path(__file__).parent.parent / "support/fakedesktop.py"
SCREEN_SAVER = "org.freedesktop.ScreenSaver"
PORTAL = "org.freedesktop.portal.Desktop"
PLAYER = "org.mpris.MediaPlayer2.orvane"


class FakeDesktop:
    """Services on a desktop's session bus, by their names."""

    def __init__(self, desktop: Desktop, *names: str, **variables: str):
        self._said = desktop.folder / f"said-{id(self)}"
        with open(self._said, "w", encoding="utf-8") as said:
            self._process = desktop.background(
                ["/usr/bin/python3", "-B", str(FAKE_DESKTOP), *names], stdin=subprocess.PIPE, text=True,
                stdout=said, stderr=said, env=desktop.environment | variables)
        wait_until(self.lines, "the services of the desktop")

    def lines(self) -> list[str]:
        return self._said.read_text(encoding="utf-8").splitlines()

    def heard(self) -> list[str]:
        """What it was asked for, without the texts."""
        return [line.split()[0] for line in self.lines()[1:]]

    def wait_for(self, *lines: str):
        """That and nothing else, since the start."""
        wait_until(lambda: self.heard() == list(lines), f"{lines}, not {self.lines()}")

    def tell(self, order: str) -> None:
        self._process.stdin.write(order + "\n")
        self._process.stdin.flush()

    def kill(self) -> None:
        self._process.kill()
        self._process.wait()


class RemoteCase(SiteCase):
    def ask(self, *command: str) -> str:
        return self.desktop.run("playerctl", "--player=orvane", *command).strip()


class Remote(RemoteCase):
    """Through playerctl, as a panel or a media key would."""

    def wait_for_answer(self, answer: str, *command: str):
        wait_until(lambda: self.ask(*command) == answer, f"{answer}, not {self.ask(*command)}")

    def wait_for_channel(self, handle: str):
        wait_until(lambda: shows(self.program.picture(), self.site.channels[handle]), f"the picture of {handle}")

    def names(self) -> list[str]:
        """Who is a media player on the bus."""
        return re.findall(r'"(org\.mpris\..*)"', self.desktop.run(
            "dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
            "/org/freedesktop/DBus", "org.freedesktop.DBus.ListNames"))

    def test_playerctl(self):
        heard = self.desktop.folder / "heard"
        with open(heard, "w", encoding="utf-8") as out:
            self.desktop.background(["dbus-monitor", "member=PropertiesChanged,path=/org/mpris/MediaPlayer2"],
                                    stdout=out)
        program = self.start()
        program.wait_for("playing")
        self.wait_for_answer("Playing", "status")
        self.assertEqual(self.ask("metadata", "xesam:title"), "العربية")
        self.assertEqual(self.ask("metadata", "xesam:url"), f"{self.site.origin}/@AlArabiya/live")
        self.assertEqual(self.ask("metadata", "mpris:trackid"), "'/orvane/track/alarabiya'")

        self.ask("play-pause")
        self.wait_for_answer("Paused", "status")
        self.ask("play")
        self.wait_for_answer("Playing", "status")
        self.ask("volume", "0.25")
        wait_until(lambda: program.preferences().get("volume") == 0.25, "the volume")
        wait_until(lambda: "double 0.25" in heard.read_text(encoding="utf-8"), "its announcement")
        self.ask("next")
        self.wait_for_answer("العربية الحدث", "metadata", "xesam:title")
        self.wait_for_channel("AlHadath")
        self.ask("previous")
        self.wait_for_channel("AlArabiya")

        # What was stopped plays again.
        self.ask("next")
        program.wait_for("playing", 4)
        self.ask("stop")
        self.wait_for_answer("Stopped", "status")
        wait_until(lambda: not program.is_shown(), "a hidden window")
        self.ask("play")
        wait_until(program.is_shown, "the window")
        self.wait_for_channel("AlHadath")
        self.assertNotIn('"Rate"', heard.read_text(encoding="utf-8"), "only what changes is announced")
        self.desktop.run("dbus-send", "--type=method_call", f"--dest={PLAYER}", "/org/mpris/MediaPlayer2",
                         "org.mpris.MediaPlayer2.Quit")
        self.assertEqual(program.process.wait(10), 0, program.log())

    def test_second_copy_and_late_bus(self):
        other = FakeDesktop(self.desktop, PLAYER)
        program = self.start()
        wait_until(lambda: f"{PLAYER}.instance{program.process.pid}" in self.names(), "a name of its own")
        other.kill()
        self.desktop.kill_bus()
        program.wait_for("playing")
        self.desktop.start_bus()
        wait_until(lambda: PLAYER in self.names(), "the usual name, which is free now")
        self.wait_for_answer("Playing", "status")
        self.quit_cleanly()


class Screen(RemoteCase):
    """What the services that can keep the screen awake are asked for."""

    def test_screen_saver(self):
        service = FakeDesktop(self.desktop, SCREEN_SAVER)
        self.site.channels["AlHadath"].faults["master"] = 404
        program = self.start()
        program.wait_for("playing")
        service.wait_for("inhibit")
        self.assertEqual(service.lines()[1], "inhibit Orvane A channel is playing")
        self.ask("pause")
        service.wait_for("inhibit", "release")
        self.ask("play")
        service.wait_for(*["inhibit", "release"], "inhibit")
        self.ask("next")
        program.wait_for("error")
        service.wait_for(*["inhibit", "release"] * 2)
        self.ask("previous")
        service.wait_for(*["inhibit", "release"] * 2, "inhibit")
        self.ask("stop")
        service.wait_for(*["inhibit", "release"] * 3)
        self.ask("play")
        service.wait_for(*["inhibit", "release"] * 3, "inhibit")
        program.process.kill()
        service.wait_for(*["inhibit", "release"] * 4)

    def test_services_come_and_go(self):
        portal = FakeDesktop(self.desktop, PORTAL)
        program = self.start()
        program.wait_for("playing")
        portal.wait_for("inhibit")
        saver = FakeDesktop(self.desktop, SCREEN_SAVER)
        saver.wait_for("inhibit")
        portal.wait_for("inhibit", "release")
        saver.kill()
        portal.wait_for("inhibit", "release", "inhibit")
        saver = FakeDesktop(self.desktop, SCREEN_SAVER)
        saver.wait_for("inhibit")

        # An answer that nobody waits for any more.
        self.ask("pause")
        saver.wait_for("inhibit", "release")
        saver.tell("slow")
        self.ask("play")
        saver.wait_for("inhibit", "release", "asked")
        self.ask("pause")
        self.ask("status")
        saver.tell("answer")
        saver.wait_for("inhibit", "release", "asked", "inhibit", "release")
        portal.wait_for("inhibit", "release", "inhibit", "release")
        saver.kill()
        portal.kill()
        self.quit_cleanly()


if __name__ == "__main__":
    unittest.main()
