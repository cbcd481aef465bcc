# SPDX-License-Identifier: GPL-3.0-or-later
"""The program as a part of its desktop: remote control, keeping the screen awake, and playing on by itself after
sleep or a loss of the network."""

import functools
import os
import pathlib
import re
import subprocess
import sys
import time
import unittest

from case import BUILD, SiteCase
from tools import fakedesktop
from tools.desktop import Desktop
from tools.processes import descendants
from tools.program import Program, wait_for_motion, wait_for_standstill
from tools.waiting import wait_until

IS_INSIDE = "ORVANE_TEST_INSIDE" in os.environ
FAKE_DESKTOP = pathlib.Path(fakedesktop.__file__)
SCREEN_SAVER = "org.freedesktop.ScreenSaver"
PORTAL = "org.freedesktop.portal.Desktop"
NETWORK_MANAGER = "org.freedesktop.NetworkManager"
PLAYER = "org.mpris.MediaPlayer2.orvane"


class FakeDesktop:
    """Services with the given names on a desktop's session bus."""

    def __init__(self, desktop: Desktop, *names: str, **variables: str):
        self._output = desktop.folder / f"services-{id(self)}"
        with open(self._output, "w", encoding="utf-8") as output:
            self._process = desktop.background(
                ["/usr/bin/python3", "-B", str(FAKE_DESKTOP), *names], stdin=subprocess.PIPE, text=True,
                stdout=output, stderr=output, env=desktop.environment | variables)
        wait_until(self.lines, "the services of the desktop")

    def lines(self) -> list[str]:
        return self._output.read_text(encoding="utf-8").splitlines()

    def calls(self) -> list[str]:
        """Returns the calls so far, without their texts."""
        return [line.split()[0] for line in self.lines()[1:]]

    def wait_for(self, *lines: str):
        """Waits until these are all calls since the start."""
        wait_until(lambda: self.calls() == list(lines), lambda: f"{lines}, not {self.lines()}")

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
    """Remote control with playerctl, as by a panel or a media key."""

    def wait_for_answer(self, answer: str, *command: str):
        wait_until(lambda: self.ask(*command) == answer, lambda: f"{answer}, not {self.ask(*command)}")

    def names(self) -> list[str]:
        """Returns the names of the media players on the bus."""
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
        program.wait_for_preferences(volume=0.25)
        wait_until(lambda: "double 0.25" in heard.read_text(encoding="utf-8"), "its announcement")
        self.ask("next")
        self.wait_for_answer("العربية الحدث", "metadata", "xesam:title")
        self.wait_for_picture("AlHadath")
        self.ask("previous")
        self.wait_for_picture("AlArabiya")

        # "play" after "stop" plays the last channel.
        self.ask("next")
        program.wait_for("playing", 4)
        self.ask("stop")
        self.wait_for_answer("Stopped", "status")
        wait_until(lambda: not program.is_shown(), "a hidden window")
        self.ask("play")
        wait_until(program.is_shown, "the window")
        self.wait_for_picture("AlHadath")
        self.assertNotIn('"Rate"', heard.read_text(encoding="utf-8"), "only what changes is announced")
        self.desktop.run("dbus-send", "--type=method_call", f"--dest={PLAYER}", "/org/mpris/MediaPlayer2",
                         "org.mpris.MediaPlayer2.Quit")
        self.assertEqual(program.wait_for_end(), 0, program.log())

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
    """Which services that can keep the screen awake the program calls, and when."""

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

        # An answer that comes when it is no longer wanted.
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


class Preparation(RemoteCase):
    """What is asked of the site before the user asks for it."""

    def prepared(self) -> int:
        return self.site.count("/@AlHadath/live")

    def test_next_channel(self):
        network = FakeDesktop(self.desktop, NETWORK_MANAGER)
        bus = self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        program = self.start(DBUS_SYSTEM_BUS_ADDRESS=bus, QT_LOGGING_RULES="orvane.dbus.info=true")
        network.tell("metered")
        wait_until(lambda: "is to be saved" in program.log(), "a program that saves data")
        program.wait_for("playing")
        # For much longer than it would wait.
        played = self.site.count("/hls/AlArabiya/480/")
        wait_until(lambda: self.site.count("/hls/AlArabiya/480/") > played + 4, "more of the stream")
        self.assertEqual(self.prepared(), 0, "nothing on a metered connection")
        network.tell("unmetered")
        child = wait_until(lambda: [pid for pid, command in descendants(program.process.pid)
                                    if command.endswith("@AlHadath/live")], "yt-dlp")[0]
        self.assertEqual(os.sched_getscheduler(child), os.SCHED_IDLE)
        wait_until(lambda: not pathlib.Path(f"/proc/{child}").exists(), "the end of yt-dlp")
        self.site.channels["AlHadath"].faults["page"] = "hang"
        self.ask("next")
        self.wait_for_picture("AlHadath")
        self.assertEqual(self.prepared(), 1, "the address was known")
        self.quit_cleanly()


def in_own_network(test):
    """Runs the test in another process with an empty network namespace."""

    @functools.wraps(test)
    def run(self):
        if IS_INSIDE:
            test(self)
            return
        as_root = [] if os.getuid() == 0 else ["--user", "--map-root-user"]
        command = ["unshare", *as_root, "--net", sys.executable, "-B", "-m", "unittest", "-v", self.id()]
        inside = subprocess.run(command, env=os.environ | {"ORVANE_TEST_INSIDE": "1"}, check=False,
                                capture_output=True, text=True)
        print(inside.stdout)
        self.assertEqual(inside.returncode, 0, inside.stderr)

    return run


class Machine:
    """Another machine with a cable to this one: a network namespace. Use as a context manager."""

    def __init__(self, here: str, there: str):
        self._holder = subprocess.Popen(
            ["unshare", "--net", "sh", "-c", "echo ready; exec cat"], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True)
        self._holder.stdout.readline()
        self._enter = ["nsenter", f"--net=/proc/{self._holder.pid}/ns/net"]
        cable = f"ip link add cable type veth peer name eth0 netns {self._holder.pid}"
        for command in ("ip link set lo up", cable, f"ip addr add {here}/24 dev cable", "ip link set cable up"):
            subprocess.run(command.split(), check=True)
        for command in ("ip link set lo up", f"ip addr add {there}/24 dev eth0", "ip link set eth0 up"):
            self.run(*command.split())

    def __enter__(self) -> "Machine":
        return self

    def __exit__(self, *_) -> None:
        self._holder.communicate()

    def run(self, *command: str) -> None:
        subprocess.run([*self._enter, *command], check=True)

    def launcher(self, folder: pathlib.Path, binary: str) -> str:
        """Returns a command that runs a program there."""
        path = folder / "launcher"
        path.write_text(f"#!/bin/sh\nexec {' '.join(self._enter)} {binary}\n", encoding="ascii")
        path.chmod(0o755)
        return str(path)

    @staticmethod
    def cable(state: str) -> None:
        subprocess.run(["ip", "link", "set", "cable", state], check=True)


class Return(RemoteCase):
    """The picture comes back without a click."""

    site_host = "10.213.7.1" if IS_INSIDE else "127.0.0.1"

    def setUp(self):
        if IS_INSIDE:
            self.machine = self.enterContext(Machine(self.site_host, "10.213.7.2"))
        super().setUp()

    def start_there(self) -> Program:
        """The program runs on the other machine, the site on this one."""
        launcher = self.machine.launcher(self.desktop.folder, f"{BUILD}/orvane")
        self.use(Program(self.desktop, launcher, self.site.origin))
        self.program.wait_for("playing")
        return self.program

    def assert_comes_back(self, handle: str):
        back = time.monotonic()
        wait_for_motion(self.program, self.site.channels[handle])
        away = time.monotonic() - back
        print(f"the picture was back {away:.1f} s after the network: {self.program.milestones()}")
        self.assertLess(away, 10)

    @in_own_network
    def test_picture_stands_still(self):
        program = self.start_there()
        self.machine.run("ip", "addr", "add", "10.213.8.2/24", "dev", "eth0")
        wait_for_motion(program, self.channel)
        self.machine.cable("down")
        wait_for_standstill(program)
        self.assertEqual(program.count("loading"), 1, "a new address must not interrupt a picture")
        self.machine.cable("up")
        self.assert_comes_back("AlArabiya")
        self.quit_cleanly()

    @in_own_network
    def test_channel_has_failed(self):
        program = self.start_there()
        self.machine.cable("down")
        self.machine.run("ip", "addr", "flush", "dev", "eth0")
        self.ask("next")
        program.wait_for("error")
        self.machine.cable("up")
        self.machine.run("ip", "addr", "add", "10.213.7.3/24", "dev", "eth0")
        self.assert_comes_back("AlHadath")
        self.assertEqual(program.count("loading"), 3)
        self.quit_cleanly()

    def test_machine_asleep(self):
        address = self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"]
        logind = FakeDesktop(self.desktop, "org.freedesktop.login1")
        self.channel.faults["master"] = 404
        program = self.start(DBUS_SYSTEM_BUS_ADDRESS=address)
        program.wait_for("error")
        self.channel.faults.clear()
        logind.tell("wake")
        program.wait_for("playing")
        # A picture that goes on is not interrupted: waits for two more segments of two seconds each.
        logind.tell("wake")
        segments = self.site.count("/hls/AlArabiya/480/")
        wait_until(lambda: self.site.count("/hls/AlArabiya/480/") > segments + 4, "more of the picture")
        self.assertEqual(program.count("loading"), 2)
        self.quit_cleanly()


if __name__ == "__main__":
    unittest.main()
