# SPDX-License-Identifier: GPL-3.0-or-later
"""The offline demonstration: Orvane plays a live site on this machine through the real yt-dlp.

With a display it plays there until the user quits. Without one it starts its own, plays for a few seconds,
saves a screenshot, prints how long the window and the first picture took, and exits with 0 only if the picture
moved and no overlay was left on it.
"""

from __future__ import annotations

import argparse
import os
import pathlib
import subprocess
import sys
import tempfile
import time

from tools.desktop import Desktop
from tools.livesite import LiveSite
from tools.program import OFFLINE, Program, wait_for_motion

PLAY_SECONDS = 4


def play_on_this_display(binary: str, arguments: list[str]) -> int:
    with tempfile.TemporaryDirectory() as folder, LiveSite(pathlib.Path(folder)) as site:
        print(f"demo: a live site runs at {site.origin}; close the window to end", flush=True)
        environment = os.environ | OFFLINE | {
            "ORVANE_VIDEO_SITE": site.origin,
            "XDG_CONFIG_HOME": f"{folder}/config",
        }
        with subprocess.Popen([binary, *arguments], env=environment) as program:
            try:
                return program.wait()
            except KeyboardInterrupt:
                # The program has received the same signal and is ending.
                return program.wait()


def play_on_own_display(binary: str, screenshot: pathlib.Path) -> int:
    with (
        tempfile.TemporaryDirectory() as folder,
        LiveSite(pathlib.Path(folder)) as site,
        Desktop() as desktop,
        Program(desktop, binary, site.origin) as program,
    ):
        try:
            window = program.wait_for("window-shown")
            picture = program.wait_for("playing")
            channel = next(iter(site.channels.values()))
            wait_for_motion(program, channel)
            time.sleep(PLAY_SECONDS)
            wait_for_motion(program, channel)
        except AssertionError as problem:
            print(f"demo: {problem}\n{program.log()}", file=sys.stderr)
            return 1
        finally:
            screenshot.parent.mkdir(parents=True, exist_ok=True)
            desktop.screenshot().save(screenshot)
        code = program.quit()
    print(f"demo: start to window: {window:.0f} ms")
    print(f"demo: start to first picture: {picture:.0f} ms")
    print(f"demo: screenshot: {screenshot}")
    return code


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--binary", required=True)
    parser.add_argument("--display", choices=("yes", "no"), default="no")
    parser.add_argument("arguments", nargs="*")
    options = parser.parse_args()
    binary = str(pathlib.Path(options.binary).resolve())
    print("demo: preparing the live site (the first time this encodes for a minute)", flush=True)
    if options.display == "yes":
        return play_on_this_display(binary, options.arguments)
    return play_on_own_display(binary, pathlib.Path("build/demo/screenshot.png").resolve())


if __name__ == "__main__":
    sys.exit(main())
