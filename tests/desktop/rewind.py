# SPDX-License-Identifier: GPL-3.0-or-later
"""Back in time: the picture has a clock, which is read from the screen."""

import os
import pathlib
import re
import subprocess
import tempfile
import time
import unittest

from accessible import Accessible
from case import BUILD, TrayCase
from tools.clocksite import ClockSite, seconds_shown
from tools.images import is_near
from tools.processes import buffer_mib
from tools.program import Program, launcher_with
from tools.waiting import stays, wait_until

BACK = 10
# Seconds between what is shown and what is read from the screen, and between two frames of a busy machine.
NOISE = 1.5
GREY, RED = (97, 97, 101), (204, 47, 44)


class RewindCase(TrayCase):
    def setUp(self):
        super().setUp()
        self.site = self.enterContext(ClockSite(pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))))

    def lag(self) -> float:
        """Returns how far what is on the screen is behind the newest frame of the site."""
        return self.site.now() - wait_until(lambda: seconds_shown(self.program.video()), "the clock")

    def open(self):
        return self.opened(self.start())

    def opened(self, program: Program) -> Program:
        program.wait_for("playing")
        self.desktop.point(20, 20)
        self.live = self.lag()
        return program

    def wait_for_lag(self, behind: float, noise: float = NOISE):
        wait_until(lambda: abs(self.lag() - self.live - behind) < noise,
                   lambda: f"{behind} behind live, not {self.lag() - self.live:.1f}")

    def ask(self, *arguments: str) -> None:
        subprocess.run([f"{BUILD}/orvane", *arguments], env=self.program.environment, check=True)

    def mpris(self, name: str) -> str:
        return self.desktop.run(
            "gdbus", "call", "--session", "--dest", "org.mpris.MediaPlayer2.orvane", "--object-path",
            "/org/mpris/MediaPlayer2", "--method", "org.freedesktop.DBus.Properties.Get",
            "org.mpris.MediaPlayer2.Player", name)

    def wait_until_kept(self, seconds: float):
        """Waits until the player can go back, and keeps so much."""
        wait_until(lambda: "true" in self.mpris("CanSeek"), "a buffer")
        since = time.monotonic()
        wait_until(lambda: time.monotonic() - since > seconds, "what it keeps")

    def dot(self) -> tuple[int, int, int]:
        x, y, _, height = self.program.frame()
        return self.desktop.pixel(x + 11, y + height - 22)

    def wait_for_dot(self, colour):
        wait_until(lambda: is_near(self.dot(), colour, 60), lambda: f"a dot like {colour}, not {self.dot()}")

    def quit_after_no_failure(self):
        self.assertEqual(self.program.count("error"), 0, self.program.milestones())
        self.quit_cleanly()


class Rewind(Accessible, RewindCase):
    def figure(self) -> int | None:
        """Returns the seconds that the control bar says, as a screen reader reads them."""
        lines = "\n".join(self.reader.tree("Orvane"))
        found = re.search(r'"(\d+):(\d\d) behind live, go to live"', lines)
        return int(found[1]) * 60 + int(found[2]) if found else None

    def wait_for_figure(self, seconds: int, noise: int = 1):
        wait_until(lambda: (figure := self.figure()) is not None and abs(figure - seconds) <= noise,
                   lambda: f"-{seconds} s on the bar, not {self.figure()}")

    def test_back_and_live(self):
        program = self.open()
        self.assertIsNone(self.figure())
        self.wait_for_dot(RED)
        self.wait_until_kept(4 * BACK)
        self.desktop.activate(program.window())
        for steps in (1, 2):
            self.desktop.key("BackSpace")
            self.wait_for_lag(steps * BACK)
            self.wait_for_figure(steps * BACK)
        self.wait_for_dot(GREY)
        stays(lambda: abs(self.lag() - self.live - 2 * BACK) < NOISE, "it plays on from there", 3)
        self.desktop.key("End")
        self.wait_for_lag(0)
        self.wait_for_dot(RED)
        self.assertIsNone(self.figure())

        # The other ways to the same.
        self.open_context_menu()
        self.desktop.key("BackSpace")
        self.wait_for_lag(BACK)
        self.ask("--back", "5")
        self.wait_for_lag(BACK + 5)
        self.desktop.run("playerctl", "--player=orvane", "position", "5-")
        self.wait_for_lag(BACK + 10)
        position = int(re.search(r"int64 (\d+)", self.mpris("Position"))[1])
        self.desktop.run(
            "gdbus", "call", "--session", "--dest", "org.mpris.MediaPlayer2.orvane", "--object-path",
            "/org/mpris/MediaPlayer2", "--method", "org.mpris.MediaPlayer2.Player.SetPosition",
            "/orvane/track/alarabiya", str(position + 10_000_000))
        self.wait_for_lag(BACK)
        self.ask("--back", "3")
        self.ask("--live")
        self.wait_for_lag(0)
        self.ask("--back")
        self.wait_for_figure(BACK)
        x, y, _, height = program.frame()
        self.desktop.click(x + 30, y + height - 22)
        self.wait_for_lag(0)
        self.quit_after_no_failure()
        folder = pathlib.Path(program.environment["XDG_CACHE_HOME"]) / "orvane"
        self.assertEqual([path for path in folder.iterdir() if path.name.startswith("live")], [])

    def test_pause_and_switch(self):
        program = self.open()
        self.wait_until_kept(1)
        self.desktop.activate(program.window())
        self.desktop.key("space")
        shown = seconds_shown(program.video())
        paused = self.site.now()
        self.wait_for_figure(20)
        self.wait_for_dot(GREY)
        self.assertAlmostEqual(seconds_shown(program.video()), shown, delta=NOISE, msg="it stands still")
        self.desktop.key("space")
        wait_until(lambda: seconds_shown(program.video()) > shown + 1, "it plays on")
        away = self.site.now() - paused
        self.assertLess(seconds_shown(program.video()), shown + away - 15, "from where it was")
        self.wait_for_lag(20, 3)
        stays(lambda: abs(self.lag() - self.live - 20) < 3, "nothing is lost", 15)

        # The site stands still: what is kept is played, and only then the channel fails.
        self.channel = self.site.channels["AlArabiya"]
        self.channel.frozen_at = time.monotonic()
        stays(lambda: program.count("error") == 0 and program.count("loading") == 1, "nothing is stuck", 18)
        self.channel.frozen_at = None
        # Another channel begins at live.
        self.ask("--play", "alhadath")
        program.wait_for("playing", 2)
        wait_until(lambda: self.figure() is None, "live")
        wait_until(lambda: (seconds_shown(program.video()) or 0) > ClockSite.LATER, "the other channel")
        self.assertLess(abs(self.lag() + ClockSite.LATER - self.live), 3)
        self.quit_after_no_failure()

    def test_times_start_anew(self):
        program = self.open()
        self.wait_until_kept(15)
        self.ask("--back")
        self.wait_for_lag(BACK)
        self.site.start_anew(56)
        self.wait_for_figure(BACK)
        before = seconds_shown(program.video())
        begun = wait_until(lambda: (shown := seconds_shown(program.video())) < before - 10 and shown, "the new time")
        wait_until(lambda: seconds_shown(program.video()) > begun + 5, "it plays on")
        # What was before cannot be reached any more, and is not tried.
        self.ask("--back", "500")
        stays(lambda: (seconds_shown(program.video()) or 0) < before - 10, "the new time", 5)
        self.ask("--live")
        wait_until(lambda: self.figure() is None, "live")
        # Live on the far side of a break.
        self.ask("--play", "alarabiya")
        program.wait_for("playing", 2)
        self.wait_until_kept(15)
        self.ask("--back", "8")
        self.wait_for_figure(8, 2)
        self.site.start_anew(20)
        lists = self.site.count("/hls/AlArabiya/480/list")
        wait_until(lambda: self.site.count("/hls/AlArabiya/480/list") > lists + 3, "what comes after it")
        self.ask("--live")
        wait_until(lambda: self.figure() is None, "live")
        self.wait_for_dot(RED)
        self.quit_after_no_failure()


class Bounds(RewindCase):
    """What the buffer may take."""

    def test_full_buffer(self):
        preferences = pathlib.Path(self.desktop.environment["XDG_CONFIG_HOME"]) / "orvane/preferences.json"
        preferences.parent.mkdir(parents=True)
        preferences.write_text('{"bufferMinutes": 1}', encoding="ascii")
        program = self.open()
        self.wait_until_kept(1)
        self.desktop.run("playerctl", "--player=orvane", "pause")
        shown = seconds_shown(program.video())
        # The pause moves on with what is kept.
        wait_until(lambda: seconds_shown(program.video()) > shown + 5, "a full buffer", 90)
        wait_until(lambda: seconds_shown(program.video()) > shown + 25, "more of the same", 90)
        self.assertLess(self.lag() - self.live, 65)
        self.desktop.run("playerctl", "--player=orvane", "play")
        before = seconds_shown(program.video())
        wait_until(lambda: seconds_shown(program.video()) > before + 10, "it plays on")
        # 60 seconds and what is not cut out yet, of 14 kB each.
        self.assertLess(buffer_mib(program.process.pid), 1.7)
        self.assertGreater(buffer_mib(program.process.pid), 0.3)
        self.ask("--live")
        self.wait_for_lag(0)
        self.ask("--back", "500")
        wait_until(lambda: self.lag() - self.live > 30, "the earliest of what is kept")
        self.assertLess(self.lag() - self.live, 65)
        self.quit_after_no_failure()

    def launcher(self, size: str) -> str:
        """Returns a program that starts Orvane with a disk of its own for its cache."""
        cache = pathlib.Path(self.desktop.environment["XDG_CACHE_HOME"])
        cache.mkdir(parents=True, exist_ok=True)
        return launcher_with(f"mount -t tmpfs -o size={size} none {cache}", f"{BUILD}/orvane",
                             self.desktop.folder / "launcher")

    def test_full_disk(self):
        program = self.open_on_a_disk_of("600M")
        wait_until(lambda: "No disk" in program.log(), "the size of the disk")
        self.assertEqual(buffer_mib(program.process.pid), 0)
        self.assertIn("false", self.mpris("CanSeek"))
        self.ask("--back")
        stays(lambda: abs(self.lag() - self.live) < NOISE, "it plays on", 3)
        self.quit_after_no_failure()

    def test_disk_fills_up(self):
        program = self.open_on_a_disk_of("1300M")
        self.wait_until_kept(15)
        self.ask("--back")
        self.wait_for_lag(BACK)
        cache = self.desktop.environment["XDG_CACHE_HOME"]
        with open(f"/proc/{program.process.pid}/root{cache}/other", "wb") as other:
            os.posix_fallocate(other.fileno(), 0, 900 << 20)
            # What is kept is given up, and with it the place of a viewer who is behind.
            wait_until(lambda: "no room any more" in program.log(), "a full disk")
            self.wait_for_lag(0)
            wait_until(lambda: "false" in self.mpris("CanSeek"), "no buffer")
            wait_until(lambda: buffer_mib(program.process.pid) < 0.6, "the place on the disk")
            os.ftruncate(other.fileno(), 0)
        wait_until(lambda: "true" in self.mpris("CanSeek"), "room again")
        self.quit_after_no_failure()

    def open_on_a_disk_of(self, size: str) -> Program:
        binary = self.launcher(size)
        self.desktop.environment["QT_LOGGING_RULES"] = "orvane.player.info=true"
        return self.opened(self.use(Program(self.desktop, binary, self.site.origin)))


class Sound(RewindCase):
    def test_sound_only(self):
        self.start_tint2()
        program = self.open()
        self.wait_until_kept(15)
        self.ask("--back")
        self.wait_for_lag(BACK)
        self.desktop.activate(program.window())
        self.desktop.key("s")
        wait_until(lambda: not program.is_shown(), "a hidden window")
        self.assertIn("Playing", self.mpris("PlaybackStatus"))
        self.assertIn("Sound Only", self.mpris("Metadata"))
        self.ask()
        wait_until(lambda: program.is_shown() and seconds_shown(program.video()), "the picture")
        self.wait_for_lag(BACK)

        # The same by the menus. Another channel is opened without a window, and heals without one.
        self.open_context_menu()
        self.desktop.key("s")
        wait_until(lambda: not program.is_shown(), "a hidden window")
        self.ask("--next")
        program.wait_for("playing", 2)
        self.assertFalse(program.is_shown())
        self.site.channels["AlHadath"].ends = True
        program.wait_for("error")
        self.site.channels["AlHadath"].ends = False
        program.wait_for("playing", 3)
        self.assertFalse(program.is_shown())
        self.open_tray_menu()
        self.desktop.key("s")
        wait_until(program.is_shown, "the window")
        wait_until(lambda: (seconds_shown(program.video()) or 0) > ClockSite.LATER, "the picture")
        self.quit_cleanly()


if __name__ == "__main__":
    unittest.main()
