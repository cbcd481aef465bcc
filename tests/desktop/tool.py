# SPDX-License-Identifier: GPL-3.0-or-later
"""The real yt-dlp resolves a channel's name, and is installed on a machine without it."""

import hashlib
import os
import pathlib
import platform
import shutil
import subprocess
import tempfile
import unittest

from tools.desktop import Desktop
from tools.livesite import LiveSite
from tools.loopback import LoopbackServer
from tools.program import Program, launcher_with, wait_for_motion

BUILD = os.environ["ORVANE_BUILD"]
RELEASE = "/yt-dlp/yt-dlp/releases/latest/download"
PACKAGE = pathlib.Path("/usr/lib/python3/dist-packages/yt_dlp")


class ReleaseServer(LoopbackServer):
    """Serves a release's files, the executable only after `allowed` is set."""

    def __init__(self, files: dict[str, bytes]):
        super().__init__()
        self._files = files

    def answer(self, request):
        body = self._files.get(request.path)
        if not request.path.endswith("SUMS"):
            self.allowed.wait()
        self.begin(request, 404 if body is None else 200, len(body or b""))
        request.wfile.write(body or b"")


class Tool(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.site = self.enterContext(LiveSite(self.folder))

    def test_channel_name(self):
        # The resolver checks certificates, but the user's own settings for yt-dlp apply.
        settings = self.folder / "yt-dlp"
        settings.mkdir()
        (settings / "config").write_text("--no-check-certificates\n", encoding="ascii")
        environment = os.environ | {
            "ORVANE_VIDEO_SITE": self.site.origin,
            "XDG_CONFIG_HOME": str(self.folder),
        }
        inputs = [" @AlArabiya ", f"{self.site.origin}/@AlHadath/live", "@Nobody"]
        done = subprocess.run(
            [f"{BUILD}/resolve_probe", *inputs],
            env=environment, check=True, capture_output=True, text=True,
        )
        self.assertEqual(
            done.stdout.splitlines(),
            ["AlArabiya|قناة AlArabiya", "AlHadath|قناة AlHadath",
             "Channel not found. Check the handle or URL."],
        )

    def test_first_start_without_the_tool(self):
        """Nothing in any searched place, no pip and no Homebrew: yt-dlp is downloaded, then the channel plays."""
        copy = self.folder / "package"
        shutil.copytree(PACKAGE, copy / "yt_dlp")
        tool = f"#!/bin/sh\nPYTHONPATH={copy} exec /usr/bin/python3 -m yt_dlp \"$@\"\n".encode()
        name = "yt-dlp_linux_aarch64" if platform.machine() == "aarch64" else "yt-dlp_linux"
        sums = f"{hashlib.sha256(tool).hexdigest()}  {name}\n".encode()
        files = {f"{RELEASE}/{name}": tool, f"{RELEASE}/SHA2-256SUMS": sums}
        hidden = ["/usr/bin/yt-dlp", "/usr/bin/pip3", "/usr/local/bin/yt-dlp", "/usr/local/bin/pip3"]
        empty = self.folder / "empty"
        empty.mkdir()
        # Hides the machine's own tools from the program alone.
        script = f"mount --bind {empty} {PACKAGE}\n"
        script += "".join(f"[ ! -e {f} ] || mount --bind /dev/null {f}\n" for f in hidden)
        launcher = launcher_with(script, f"{BUILD}/orvane", self.folder / "launcher")
        with ReleaseServer(files) as releases, Desktop() as desktop:
            # Excludes the developer's own tools.
            path = {"PATH": "/usr/bin:/bin"}
            with Program(desktop, launcher, self.site.origin, ORVANE_GITHUB=releases.origin,
                         PYTHONPATH="", **path) as program:
                # The channel waits for the installation, which the overlay shows.
                program.wait_for("installing")
                if keep := os.environ.get("ORVANE_KEEP_SCREEN"):
                    program.picture().save(keep)
                releases.allowed.set()
                program.wait_for("playing")
                wait_for_motion(program, self.site.channels["AlArabiya"])
                self.assertEqual(program.count("installing"), 1)
                self.assertEqual(program.count("error"), 0)
                self.assertEqual(program.quit(), 0, program.log())
            installed = pathlib.Path(desktop.environment["HOME"]) / ".local/bin"
            self.assertEqual([f.name for f in installed.iterdir()], ["yt-dlp"])


if __name__ == "__main__":
    unittest.main()
