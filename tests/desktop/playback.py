# SPDX-License-Identifier: GPL-3.0-or-later
"""The built program plays the live site. What the site can do wrong is in the table of faults."""

import unittest

from case import BUILD, SiteCase
from tools.processes import own_memory_mib, threads
from tools.program import wait_for_motion
from tools.waiting import wait_until

SWITCHES = 50
# MiB: the share of buffers that happen to be in use; the sanitizers keep what was freed.
MEMORY_NOISE = 10 if "asan" not in BUILD else 1024
# Fewer than one player has: a thread that leaks at each switch would be thirty.
THREAD_NOISE = 8


class Playback(SiteCase):
    def test_first_picture(self):
        program = self.start()
        wait_for_motion(program, self.channel)
        self.assertEqual(program.frame(), (780, 386, 480, 314))
        self.assertEqual(program.count("error"), 0)
        wait_until(lambda: self.site.count("/hls/AlArabiya/480/") > 2, "more of the stream")
        self.assertEqual(self.site.count("/hls/AlArabiya/360/"), 0, "480p was asked for")
        state = self.desktop.run("xprop", "-id", program.window(), "_NET_WM_STATE")
        self.assertIn("_NET_WM_STATE_ABOVE", state)
        self.quit_cleanly()
        preferences = program.preferences()
        self.assertEqual(preferences["lastChannelID"], "alarabiya")
        self.assertEqual(preferences["windowFrame"], "{{780, 386}, {480, 314}}")
        self.assertIs(preferences["onboardingCompleted"], True)

    def test_opengl_output(self):
        program = self.start(ORVANE_VIDEO_OUTPUT="opengl")
        wait_for_motion(program, self.channel)
        self.quit_cleanly()

    def test_fifty_switches(self):
        """Of channels of which one never answers. The least that the program held counts: players come and go."""
        list(self.site.channels.values())[-1].faults["list"] = "hang"
        program = self.start("play_probe", arguments=[str(SWITCHES)])
        groups = [[] for _ in range(SWITCHES // 10)]
        done = 0

        def lines() -> list[str]:
            return [x for x in program.log().splitlines() if x.startswith(("played", "waited"))]

        while done < SWITCHES:
            before = done
            wait_until(lambda: len(lines()) > before or program.process.poll() is not None, "a switch")
            done = len(lines())
            self.assertGreater(done, before, program.log())
            if done < SWITCHES:
                groups[done // 10].append((own_memory_mib(program.process.pid), threads(program.process.pid)))
        self.assertEqual(program.wait_for_end(), 0, program.log())
        held = [tuple(map(min, zip(*group))) for group in groups]
        print("the least memory (MiB) and threads in each ten switches:", held)
        self.assertLess(held[-1][0] - held[1][0], MEMORY_NOISE)
        self.assertLess(held[-1][1] - held[1][1], THREAD_NOISE)
        self.assertEqual(self.site.count("/@"), len(self.site.channels), "addresses are remembered")


if __name__ == "__main__":
    unittest.main()
