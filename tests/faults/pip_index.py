# SPDX-License-Identifier: GPL-3.0-or-later
"""A package index and a release server on loopback, whose newest yt-dlp is this machine's with another version."""

import io
import json
import pathlib
import zipfile

from tools.loopback import LoopbackServer

PACKAGE = pathlib.Path("/usr/lib/python3/dist-packages/yt_dlp")


class PipIndex(LoopbackServer):
    """Use as a context manager."""

    def __init__(self):
        super().__init__()
        self._files = {file.relative_to(PACKAGE.parent).as_posix(): file.read_bytes() for file in PACKAGE.rglob("*.py")}
        self.publish(1)

    def publish(self, release: int) -> str:
        """Makes this the newest release; returns its version."""
        self.version = f"2030.01.{release:02}"
        self._name = f"yt_dlp-2030.1.{release}-py3-none-any.whl"
        info = f"yt_dlp-2030.1.{release}.dist-info"
        files = self._files | {
            "yt_dlp/version.py": self._files["yt_dlp/version.py"] + f"\n__version__ = {self.version!r}\n".encode(),
            f"{info}/METADATA": f"Metadata-Version: 2.1\nName: yt-dlp\nVersion: 2030.1.{release}\n".encode(),
            f"{info}/WHEEL": b"Wheel-Version: 1.0\nGenerator: test\nRoot-Is-Purelib: true\nTag: py3-none-any\n",
            f"{info}/entry_points.txt": b"[console_scripts]\nyt-dlp = yt_dlp:main\n",
        }
        files[f"{info}/RECORD"] = "".join(f"{name},,\n" for name in [*files, f"{info}/RECORD"]).encode()
        wheel = io.BytesIO()
        with zipfile.ZipFile(wheel, "w") as archive:
            for name, body in files.items():
                archive.writestr(name, body)
        self._wheel = wheel.getvalue()
        return self.version

    def answer(self, request):
        if request.path.endswith("/releases/latest"):
            kind, body = "application/json", json.dumps({"tag_name": self.version}).encode()
        elif request.path.endswith(".whl"):
            kind, body = "application/octet-stream", self._wheel
        else:
            kind, body = "text/html", f'<a href="/{self._name}">{self._name}</a>'.encode()
        request.send_response(200)
        request.send_header("Content-Type", kind)
        request.send_header("Content-Length", str(len(body)))
        request.end_headers()
        request.wfile.write(body)
