# SPDX-License-Identifier: GPL-3.0-or-later
"""The built program plays the live site. What the site can do wrong is in the table of faults."""

import statistics
import unittest

from case import BUILD, SiteCase
from tools.processes import own_memory_mib, threads
from tools.program import wait_for_motion
from tools.waiting import wait_until

SWITCHES = 100
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

    def test_hundred_switches(self):
        """Of channels of which one never answers. Players come and go within 30 ms each, so medians count."""
        list(self.site.channels.values())[-1].faults["list"] = "hang"
        program = self.start("play_probe", arguments=[str(SWITCHES)])
        held = []
        done = 0

        def lines() -> list[str]:
            return [x for x in program.log().splitlines() if x.startswith(("played", "waited"))]

        while done < SWITCHES:
            before = done
            wait_until(lambda: len(lines()) > before or program.process.poll() is not None, "a switch")
            done = len(lines())
            self.assertGreater(done, before, program.log())
            if done < SWITCHES:
                held.append((done, own_memory_mib(program.process.pid), threads(program.process.pid)))
        self.assertEqual(program.wait_for_end(), 0, program.log())
        # During the first ones yt-dlp runs, with moments without any player.
        early = [sample[1:] for sample in held if SWITCHES // 5 < sample[0] <= SWITCHES * 3 // 5]
        late = [sample[1:] for sample in held if sample[0] > SWITCHES * 3 // 5]
        memory, thread_count = ([statistics.median(values) for values in (x, y)]
                                for x, y in zip(zip(*early), zip(*late)))
        print("memory (MiB) and threads, early and late:", memory, thread_count)
        self.assertLess(memory[1] - memory[0], MEMORY_NOISE)
        self.assertLess(thread_count[1] - thread_count[0], THREAD_NOISE)
        self.assertEqual(self.site.count("/@"), len(self.site.channels), "addresses are remembered")


if __name__ == "__main__":
    unittest.main()
