# SPDX-License-Identifier: GPL-3.0-or-later
"""One running copy: what a second start does, and that no request is lost when several starts meet. There is no
session bus here."""

import os
import subprocess
import unittest

from case import BUILD
from tools.desktop import Desktop
from tools.program import OFFLINE, Program
from tools.waiting import DEADLINE, wait_until

PAIRS = int(os.environ.get("ORVANE_TEST_PAIRS", "15"))


class Instance(unittest.TestCase):
    def setUp(self):
        self.desktop = self.enterContext(Desktop())
        self.desktop.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={self.desktop.folder}/none"

    def start(self, *arguments: str) -> Program:
        """Starts the program, which may become the running copy."""
        started = Program(self.desktop, f"{BUILD}/orvane", arguments=arguments)
        return self.enterContext(started)

    def ask(self, *arguments: str) -> tuple[int, str]:
        """Starts the program and waits for its end; returns the exit code and the error message."""
        environment = self.desktop.environment | OFFLINE
        done = subprocess.run([f"{BUILD}/orvane", *arguments], env=environment, timeout=DEADLINE, check=False,
                              stderr=subprocess.PIPE, text=True)
        return done.returncode, done.stderr

    def the_player(self, starts: list[Program]) -> Program:
        """Waits until all of them but one have ended with exit code 0; returns the running one."""
        def running():
            return [p for p in starts if p.process.poll() is None]

        wait_until(lambda: len(running()) <= 1, "the end of all starts but one")
        ended = [p.process.returncode for p in starts if p not in running()]
        self.assertEqual(ended, [0] * (len(starts) - 1), starts[0].log())
        return running()[0]

    def test_second_start(self):
        program = self.start("--play", "al hadath")
        program.wait_for("window-shown")
        program.wait_for_preferences(lastChannelID="alhadath")
        program.wait_for("loading")
        self.assertEqual(program.count("loading"), 1)
        self.desktop.close(program.window())
        wait_until(lambda: not program.is_shown(), "a hidden window")
        self.assertEqual(self.ask(), (0, ""))
        program.wait_for_preferences(lastChannelID="alarabiya")
        wait_until(program.is_shown, "the window")
        code, message = self.ask("--play", "dwnew")
        self.assertEqual(code, 2)
        self.assertIn("dwnews", message)
        # Another name of the same display.
        self.desktop.environment["DISPLAY"] += ".0"
        self.assertEqual(self.ask("--play", "DW News", "--next"), (0, ""))
        program.wait_for_preferences(lastChannelID="euronews")

    def test_start_after_a_crash(self):
        """Uses the folder for temporary files, since there is no runtime folder."""
        del self.desktop.environment["XDG_RUNTIME_DIR"]
        self.desktop.environment["TMPDIR"] = str(self.desktop.folder)
        folder = self.desktop.folder / f"orvane-{os.getuid()}"
        first = self.start()
        first.wait_for("window-shown")
        first.process.kill()
        first.process.wait()
        self.assertEqual(len(list(folder.glob("*.socket"))), 1)
        second = self.start("--mute")
        second.wait_for_preferences(isMuted=True)
        self.assertEqual(self.ask("--mute"), (0, ""))
        second.wait_for_preferences(isMuted=False)
        self.assertEqual(folder.stat().st_mode & 0o777, 0o700)
        self.assertEqual(self.ask("--quit"), (0, ""))
        self.assertEqual(second.wait_for_end(), 0)
        self.assertEqual(self.ask("--quit"), (0, ""), "no copy runs any more")
        self.assertEqual(list(folder.glob("*.socket")), [])

    def test_pairs(self):
        """Two starts at the same moment, repeatedly: one player runs, and both requests are carried out."""
        won = 0
        for pair in range(PAIRS):
            on = pair % 2 == 0
            starts = [self.start("--mute"), self.start("--toggle-ghost")]
            player = self.the_player(starts)
            won += player is starts[0]
            player.wait_for_preferences(isMuted=on, ghostModeEnabled=on)
            player.window()
            self.assertEqual(len(player.windows()), 1)
            self.assertEqual(self.ask("--quit"), (0, ""))
            self.assertEqual(player.wait_for_end(), 0)
        print(f"{PAIRS} pairs; the first start won {won} times")

    def test_quit_meets_another_start(self):
        """The running copy carries out a request before it ends, or the new start takes its place."""
        starts = []
        for attempt in range(max(PAIRS // 3, 1)):
            starts.append(self.start("--play", "dwnews"))
            starts[-1].wait_for_preferences(lastChannelID="dwnews")
            leaving, asking = self.start("--quit"), self.start("--mute")
            starts += [leaving, asking]
            self.assertEqual(leaving.wait_for_end(), 0)
            asking.wait_for_preferences(isMuted=attempt % 2 == 0)
            # The copy may have ended by now.
            starts.append(self.start("--play", "cgtn"))
            asking.wait_for_preferences(lastChannelID="cgtn")
            self.the_player(starts)
        self.assertEqual(self.ask("--quit"), (0, ""))
        self.assertEqual([start.wait_for_end() for start in starts], [0] * len(starts))


if __name__ == "__main__":
    unittest.main()
