# SPDX-License-Identifier: GPL-3.0-or-later
"""The built program against the live site: what a person sees when all is well, and when it is not.

Each test has a desktop and a site of its own. The milestones that the program writes tell when it
believes that something happened; the screen tells whether it did."""

import time
import unittest

from case import BUILD, SiteCase
from desktop import moves, wait_for_motion, wait_until
from livesite import background, shows
from processes import own_memory_mib, threads

BAR_HEIGHT = 44
SWITCHES = 50
# What buffers that happen to be in use make of the memory; the sanitizers keep what was freed.
NOISE_MIB = 10 if "asan" not in BUILD else 1024
# Less than one player has: a thread that stays behind at each switch would be thirty.
NOISE_THREADS = 8


class Playback(SiteCase):
    def picture_area(self):
        """The picture without the control bar."""
        _, _, width, height = self.program.frame()
        return (0, 0, width, height - BAR_HEIGHT)

    def overlay_is_up(self):
        """Whatever the picture is, under the overlay it is a quarter as bright at most."""
        return max(background(self.program.picture())) < 64

    def click_retry(self):
        x, y, width, height = self.program.frame()
        self.desktop.click(x + width / 2, y + height / 2 + 57)

    # All is well

    def test_first_picture(self):
        program = self.start()
        program.wait_for("window-shown")
        program.wait_for("playing")
        self.assertEqual(program.frame(), (780, 386, 480, 314))
        picture = wait_for_motion(program, self.picture_area())
        self.assertTrue(shows(picture, self.channel), background(picture))
        self.assertEqual(program.count("error"), 0)
        self.assertGreater(self.site.count("/hls/AlArabiya/480/"), 2)
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
        program.wait_for("playing")
        picture = wait_for_motion(program, self.picture_area())
        self.assertTrue(shows(picture, self.channel), background(picture))
        self.quit_cleanly()

    # The site refuses

    def test_refused_once(self):
        self.channel.faults["list"] = 403
        self.channel.fault_count["list"] = 1
        program = self.start()
        program.wait_for("playing")
        wait_for_motion(program, self.picture_area())
        self.assertEqual(program.count("error"), 0)
        self.assertEqual(program.count("loading"), 2)
        self.assertEqual(self.site.count("/@AlArabiya/live"), 2, "a fresh address")
        self.quit_cleanly()

    def test_refused_in_the_middle(self):
        program = self.start()
        program.wait_for("playing")
        self.channel.faults["segment"] = 403
        program.wait_for("loading", 2)
        # The next player is refused too: that it is heard as well must not depend on its being first.
        self.channel.faults["list"] = 403
        program.wait_for("loading", 4)
        self.channel.faults.clear()
        program.wait_for("playing", 2)
        wait_for_motion(program, self.picture_area())
        self.assertEqual(program.count("error"), 0)
        self.quit_cleanly()

    def test_not_found_and_retry(self):
        self.channel.faults["list"] = 404
        program = self.start()
        program.wait_for("error")
        wait_until(self.overlay_is_up, "the overlay")
        still = program.picture()
        self.assert_text_mentions("404")
        self.assertFalse(moves(still, program.picture()))
        self.channel.faults.clear()
        self.click_retry()
        program.wait_for("playing")
        picture = wait_for_motion(program, self.picture_area())
        self.assertTrue(shows(picture, self.channel), background(picture))
        self.quit_cleanly()

    def test_stream_ends(self):
        program = self.start()
        program.wait_for("playing")
        self.channel.ends = True
        self.channel.frozen_at = time.monotonic()
        program.wait_for("error")
        wait_until(self.overlay_is_up, "the overlay")
        self.assert_text_mentions("Stream ended")
        self.channel.ends = False
        self.channel.frozen_at = None
        self.click_retry()
        program.wait_for("playing", 2)
        wait_for_motion(program, self.picture_area())
        self.quit_cleanly()

    def test_hanging_server(self):
        self.channel.faults["list"] = "hang"
        program = self.start()
        wait_until(lambda: self.site.count("/hls/AlArabiya/480/list.m3u8"), "the player's request")
        self.quit_cleanly()

    # Ways out

    def test_quit_while_busy(self):
        self.channel.faults["page"] = "hang"
        program = self.start()
        wait_until(lambda: self.site.count("/@AlArabiya/live"), "yt-dlp's request")
        self.assertTrue(any("yt-dlp" in command for command in program.children()))
        self.quit_cleanly()

    def test_close_while_busy(self):
        """The window goes and yt-dlp with it; the program stays, and does not play this channel again."""
        self.channel.faults["page"] = "hang"
        program = self.start()
        wait_until(lambda: self.site.count("/@AlArabiya/live"), "yt-dlp's request")
        self.desktop.close(program.window())
        wait_until(lambda: not program.is_shown(), "a hidden window")
        wait_until(lambda: not program.children(), "the end of yt-dlp")
        program.wait_for_preferences(lastChannelID="")
        self.quit_cleanly()

    # A long day

    def test_fifty_switches(self):
        """To channels of which one never answers. Of what the program holds the least counts: players come and go."""
        list(self.site.channels.values())[-1].faults["list"] = "hang"
        program = self.start("play_probe", arguments=[str(SWITCHES)])
        groups = [[] for _ in range(SWITCHES // 10)]
        done = 0
        while done < SWITCHES:
            lines = lambda: [x for x in program.log().splitlines() if x.startswith(("played", "waited"))]
            before, ended = done, lambda: program.process.poll() is not None
            wait_until(lambda: len(lines()) > before or ended(), "a switch")
            done = len(lines())
            self.assertGreater(done, before, program.log())
            if done < SWITCHES:
                groups[done // 10].append((own_memory_mib(program.process.pid), threads(program.process.pid)))
        self.assertEqual(program.process.wait(60), 0, program.log())
        held = [tuple(map(min, zip(*group))) for group in groups]
        print("the least memory (MiB) and threads in each ten switches:", held)
        self.assertLess(held[-1][0] - held[1][0], NOISE_MIB)
        self.assertLess(held[-1][1] - held[1][1], NOISE_THREADS)
        self.assertEqual(self.site.count("/@"), len(self.site.channels), "addresses are remembered")

    def assert_text_mentions(self, text: str):
        """The overlay shows what the error announced, which the milestone has in words."""
        self.assertIn(text, self.program.said("error"))


if __name__ == "__main__":
    unittest.main()
