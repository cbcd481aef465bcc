# SPDX-License-Identifier: GPL-3.0-or-later
"""A live site whose channels show the time, in a form that a program reads from a screenshot: a row of boxes, white for 1
and black for 0, which count fifths of a second. The timestamps go on for `LOOP_SECONDS`; unlike the other site's they
start anew only when told to (see `ClockSite.start_anew`)."""

from __future__ import annotations

import pathlib
import time

from PIL import Image

from tools.channels import STANDARD_CHANNELS, Channel
from tools.livesite import LIVE_SEGMENTS, LiveSite
from tools.segments import FRAME_RATE, SEGMENT_SECONDS, cached

LOOP_SECONDS = 600
STEP_SECONDS = 0.2
_BITS = 12
_WIDTH, _HEIGHT = 640, 360
_BOX = _WIDTH // (_BITS + 1)
_CLOCK_TOP, _CLOCK_HEIGHT = 120, 80


def _recipe(channel: Channel):
    boxes = [f"drawbox=x={_BOX // 2}:y={_CLOCK_TOP}:w={_BOX * _BITS}:h={_CLOCK_HEIGHT}:color=black:t=fill"]
    boxes += [f"drawbox=x={_BOX // 2 + _BOX * (_BITS - 1 - bit)}:y={_CLOCK_TOP}:w={_BOX}:h={_CLOCK_HEIGHT}:color=white:t=fill:"
              f"enable='mod(floor((t+0.001)/{STEP_SECONDS}/{2 ** bit}),2)'" for bit in range(_BITS)]

    def commands(folder: str) -> list[list[str]]:
        return [
            ["mkdir", "-p", folder],
            ["ffmpeg", "-hide_banner", "-loglevel", "error", "-nostdin", "-y",
             "-f", "lavfi", "-i", f"color=c={channel.colour}:s={_WIDTH}x{_HEIGHT}:r={FRAME_RATE}",
             "-f", "lavfi", "-i", "sine=frequency=440:r=48000", "-t", str(LOOP_SECONDS), "-vf", ",".join(boxes),
             "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-g", str(FRAME_RATE * SEGMENT_SECONDS),
             "-sc_threshold", "0", "-c:a", "aac", "-b:a", "64k", "-f", "segment",
             "-segment_time", str(SEGMENT_SECONDS), "-segment_format", "mpegts", f"{folder}/%d.ts"],
        ]

    return commands


def clock_places(width: int, height: int) -> list[tuple[int, int]]:
    """Returns where to look at the boxes in a picture of this size, the greatest first."""
    y = int((_CLOCK_TOP + _CLOCK_HEIGHT / 2) * height / _HEIGHT)
    return [(int(_BOX * (box + 1) * width / _WIDTH), y) for box in range(_BITS)]


def seconds_of(colours: list[tuple[int, int, int]]) -> float | None:
    """Returns the time for the colours at those places; None where there is no clock."""
    levels = [max(colour) for colour in colours]
    if any(90 < level < 165 for level in levels):
        return None
    return sum(2**bit for bit, level in enumerate(reversed(levels)) if level > 128) * STEP_SECONDS


def seconds_shown(picture: Image.Image) -> float | None:
    """Returns the time that the picture, with nothing around it, shows."""
    return seconds_of([picture.getpixel(place) for place in clock_places(*picture.size)])


class ClockSite(LiveSite):
    """The running site of two channels; what the second one shows is `LATER` seconds ahead. It begins with the second
    `begins_at` of the loop."""

    LATER = 300

    def __init__(self, folder: pathlib.Path, begins_at: float = 60, **options):
        super().__init__(folder, STANDARD_CHANNELS[:2], **options)
        # Of the first channel: both have the same segments.
        self._folder = cached(_recipe(next(iter(self.channels.values()))))
        self.started = time.monotonic() - begins_at
        # The first segments of stretches of continuous timestamps, and by how many segments their content is shifted.
        self._stretches: list[tuple[int, int]] = [(0, 0)]

    def _newest(self, channel: Channel) -> int:
        now = channel.frozen_at if channel.frozen_at is not None else time.monotonic()
        return int((now - self.started) / SEGMENT_SECONDS)

    def now(self) -> float:
        """Returns the time that the first channel's newest frame shows, until the timestamps start anew."""
        return time.monotonic() - self.started

    def start_anew(self, seconds: float) -> None:
        """From the next segment on the time, and the timestamps, are earlier by so many seconds."""
        channel = next(iter(self.channels.values()))
        shift = self._stretches[-1][1] + int(seconds / SEGMENT_SECONDS)
        self._stretches.append((self._newest(channel) + 1, shift))

    def live_list(self, channel: Channel, variant: str) -> bytes:
        last = self._newest(channel)
        first = max(0, last - LIVE_SEGMENTS + 1)
        breaks = [start for start, _ in self._stretches[1:]]
        lines = ["#EXTM3U", "#EXT-X-VERSION:3", f"#EXT-X-TARGETDURATION:{SEGMENT_SECONDS}",
                 f"#EXT-X-MEDIA-SEQUENCE:{first}",
                 f"#EXT-X-DISCONTINUITY-SEQUENCE:{sum(start < first for start in breaks)}"]
        for number in range(first, last + 1):
            if number in breaks:
                lines.append("#EXT-X-DISCONTINUITY")
            lines += [f"#EXTINF:{SEGMENT_SECONDS:.1f},", f"/hls/{channel.handle}/{variant}/{number}.ts"]
        if channel.ends:
            lines.append("#EXT-X-ENDLIST")
        return ("\n".join(lines) + "\n").encode()

    def segment(self, channel: Channel, variant: str, number: int) -> bytes:
        shift = [shift for start, shift in self._stretches if start <= number][-1]
        if channel is not next(iter(self.channels.values())):
            number += self.LATER // SEGMENT_SECONDS
        return (self._folder / f"{(number - shift) % (LOOP_SECONDS // SEGMENT_SECONDS)}.ts").read_bytes()
