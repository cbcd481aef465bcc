# SPDX-License-Identifier: GPL-3.0-or-later
"""A live site on which hours pass in minutes.

No player plays a live stream faster than real time, so here the frames, and the segments that they are in, follow
each other at many times the normal rate. To a player it is a stream with a very high rate of very small frames."""

from __future__ import annotations

import pathlib
import threading
import time

from tools.channels import STANDARD_CHANNELS, Channel
from tools.livesite import LiveSite
from tools.segments import cached

# Speed of the site's clock, and the one at which five minutes of a player are two hours.
SPEED = 240
BUFFER_SPEED = 24
# In the site's time, as everything below unless stated otherwise.
FRAME_RATE = 5
SEGMENT_SECONDS = 2
ENCODED_HOURS = 1
HOURS = 8
# How far behind the newest segment a player begins, in segments, and how many the list has.
LEAD = 240
LISTED = 3 * LEAD
# The duration in the list. With less, players would reload the list before each segment.
ANNOUNCED_SECONDS = 0.25


def _recipe(folder: str, speed: int) -> list[list[str]]:
    """Makes segments with continuous timestamps: players need some time for a discontinuity."""
    quiet = ["ffmpeg", "-hide_banner", "-loglevel", "error", "-nostdin", "-y"]
    rate = FRAME_RATE * speed
    return [
        ["mkdir", "-p", folder],
        [*quiet, "-f", "lavfi", "-i", f"testsrc=s=64x36:r={rate}", "-f", "lavfi", "-i", "sine=r=48000",
         "-t", str(ENCODED_HOURS * 3600 / speed), "-c:v", "libx264", "-preset", "ultrafast",
         "-pix_fmt", "yuv420p", "-g", str(FRAME_RATE * SEGMENT_SECONDS), "-sc_threshold", "0",
         "-c:a", "aac", "-b:a", "64k", f"{folder}/part.mkv"],
        # One hour more than is played, so that the stream does not end before.
        [*quiet, "-stream_loop", str(HOURS // ENCODED_HOURS), "-i", f"{folder}/part.mkv", "-map", "0",
         "-c", "copy", "-f", "segment", "-segment_time", str(SEGMENT_SECONDS / speed),
         "-segment_format", "mpegts", f"{folder}/%d.ts"],
    ]


class FastSite(LiveSite):
    """For one player: its time begins with the first request for a segment."""

    speed = SPEED

    def __init__(self, folder: pathlib.Path):
        super().__init__(folder, STANDARD_CHANNELS[:1])
        self._folder = cached(lambda made: _recipe(made, self.speed))
        self._asked = threading.Lock()
        self._began: float | None = None
        self._newest = -1
        self.missed = 0

    @property
    def hours(self) -> float:
        """Returns how much has been requested so far."""
        return (self._newest + 1) * SEGMENT_SECONDS / 3600

    def live_list(self, channel: Channel, variant: str) -> bytes:
        if self._began is None:
            last = 2
        else:
            last = LEAD + int((time.monotonic() - self._began) * self.speed / SEGMENT_SECONDS)
        first = max(0, last - LISTED + 1)
        lines = ["#EXTM3U", "#EXT-X-VERSION:3", "#EXT-X-TARGETDURATION:1", f"#EXT-X-MEDIA-SEQUENCE:{first}"]
        for number in range(first, last + 1):
            lines += [f"#EXTINF:{ANNOUNCED_SECONDS},", f"/hls/{channel.handle}/{variant}/{number}.ts"]
        return ("\n".join(lines) + "\n").encode()

    def segment(self, channel: Channel, variant: str, number: int) -> bytes:
        with self._asked:
            if self._began is None:
                self._began = time.monotonic()
            self.missed += max(0, number - self._newest - 1)
            self._newest = max(self._newest, number)
        return (self._folder / f"{number}.ts").read_bytes()


class BufferSite(FastSite):
    """Slow enough for a buffer to be full most of the time."""

    speed = BUFFER_SPEED
