# SPDX-License-Identifier: GPL-3.0-or-later
"""The segments that the live site serves. They are encoded once, and kept in a cache folder under a name made
from the recipe, so that nothing is encoded while a player is being tested or measured.

usage: python3 -m tools.segments    encodes the segments of all standard channels"""

from __future__ import annotations

import fcntl
import hashlib
import os
import pathlib
import shutil
import subprocess
from collections.abc import Callable
from dataclasses import dataclass

from tools.channels import STANDARD_CHANNELS, Channel

LOOP_SECONDS = 60
SEGMENT_SECONDS = 2
FRAME_RATE = 25


@dataclass(frozen=True)
class Variant:
    name: str
    width: int
    height: int
    bit_rate: int


VARIANTS = (Variant("360", 640, 360, 500_000), Variant("480", 854, 480, 900_000))


def cache_folder() -> pathlib.Path:
    base = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    return pathlib.Path(os.environ.get("ORVANE_SITE_CACHE", f"{base}/orvane-live-site"))


def encode_command(channel: Channel, folder: str) -> list[str]:
    """Returns the command that makes a loop of segments in every variant: the channel's colour, its name, a
    clock, a moving bar."""
    big = VARIANTS[-1]
    picture = (
        f"color=c={channel.colour}:s={big.width}x{big.height}:r={FRAME_RATE}[plain];"
        f"color=c=white:s=40x120:r={FRAME_RATE}[bar];"
        f"[plain][bar]overlay=x='mod(t*160,{big.width})':y=40:shortest=0,"
        f"drawtext=text='{channel.handle}':fontsize=48:fontcolor=white:x=40:y=200,"
        f"drawtext=text='%{{pts\\:hms}}':fontsize=40:fontcolor=yellow:x=40:y=280"
    )
    names = [f"v{i}" for i in range(len(VARIANTS))]
    split = f"split={len(VARIANTS)}" + "".join(f"[s{i}]" for i in range(len(VARIANTS)))
    scales = ";".join(
        f"[s{i}]scale={v.width}:{v.height}[{names[i]}]" for i, v in enumerate(VARIANTS)
    )
    command = ["ffmpeg", "-hide_banner", "-loglevel", "error", "-nostdin", "-y"]
    command += ["-f", "lavfi", "-i", f"sine=frequency={300 + len(channel.handle) * 20}:r=48000"]
    command += ["-filter_complex", f"{picture},{split};{scales}"]
    for i, variant in enumerate(VARIANTS):
        command += ["-map", f"[{names[i]}]", "-map", "0:a", "-t", str(LOOP_SECONDS)]
        command += ["-c:v", "libx264", "-preset", "ultrafast", "-b:v", str(variant.bit_rate)]
        command += ["-pix_fmt", "yuv420p", "-g", str(FRAME_RATE * SEGMENT_SECONDS)]
        command += ["-sc_threshold", "0", "-c:a", "aac", "-b:a", "64k"]
        command += ["-f", "segment", "-segment_time", str(SEGMENT_SECONDS)]
        command += ["-segment_format", "mpegts", f"{folder}/{variant.name}/%d.ts"]
    return command


def encoded(channel: Channel) -> pathlib.Path:
    """Returns the folder with the channel's segments; makes it first if necessary."""
    return cached(lambda folder: [["mkdir", "-p", *(f"{folder}/{variant.name}" for variant in VARIANTS)],
                                  encode_command(channel, folder)])


def cached(recipe: Callable[[str], list[list[str]]]) -> pathlib.Path:
    """Returns the folder with what the commands of the recipe make; runs them if it does not exist yet."""
    text = f"2 {recipe('FOLDER')}"
    folder = cache_folder() / hashlib.sha256(text.encode()).hexdigest()[:16]
    folder.parent.mkdir(parents=True, exist_ok=True)
    # Of two tests that start at once, one encodes and the other waits.
    with open(f"{folder}.lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not folder.exists():
            unfinished = f"{folder}.new"
            shutil.rmtree(unfinished, ignore_errors=True)
            for command in recipe(unfinished):
                subprocess.run(command, check=True)
            os.rename(unfinished, folder)
    return folder


if __name__ == "__main__":
    for standard in STANDARD_CHANNELS:
        encoded(Channel(*standard))
