# SPDX-License-Identifier: GPL-3.0-or-later
"""A live video site on loopback, over HTTPS, for the demonstration and the desktop tests.

It answers a channel's live page ("/@HANDLE/live"), its videos page ("/@HANDLE/videos") and the watch
page ("/watch?v=ID") with a page that yt-dlp reads by itself, and serves each channel as a multi-variant live HLS stream whose list
slides with the clock. Nothing is encoded while it serves: a loop of segments is made once for each
channel and kept in a cache folder under a name made from the recipe.

Faults are set per channel at any time (see `Channel.faults`); every request is recorded.
"""

from __future__ import annotations

import argparse
import contextlib
import fcntl
import hashlib
import http.server
import json
import os
import pathlib
import shutil
import socket
import ssl
import subprocess
import sys
import threading
import time
import urllib.parse
from collections.abc import Callable
from dataclasses import dataclass, field

LOOP_SECONDS = 60
SEGMENT_SECONDS = 2
FRAME_RATE = 25
LIVE_SEGMENTS = 5


@dataclass(frozen=True)
class Variant:
    name: str
    width: int
    height: int
    bit_rate: int


VARIANTS = (Variant("360", 640, 360, 500_000), Variant("480", 854, 480, 900_000))


@dataclass
class Channel:
    """One channel of the site. `colour` is the background of its picture (an ffmpeg colour).

    `faults` maps a resource ("page", "watch", "master", "list", "segment") to the status it is
    answered with instead, to "hang" for an answer that never comes, or to "loop" for one that leads back
    to itself. `fault_count` limits how many answers a fault spoils. `ends` closes the live list; `frozen_at` stops it from advancing.
    """

    handle: str
    video_id: str
    colour: str
    faults: dict[str, int | str] = field(default_factory=dict)
    fault_count: dict[str, int] = field(default_factory=dict)
    ends: bool = False
    frozen_at: float | None = None


# The built-in channels that the site knows, told apart by their pictures.
STANDARD_CHANNELS = (
    ("AlArabiya", "n7eQejkXbnM", "0x1040a0"),
    ("AlHadath", "0STUpSryLWY", "0xa02020"),
    ("aljazeera", "bNyUyrR0PHo", "0xa07010"),
    ("AljazeeraMubasher", "rvJOGTSQNj8", "0x108040"),
)


def background(picture) -> tuple[int, int, int]:
    """What a (PIL) picture of the player window shows beside the site's texts and its moving bar."""
    return picture.getpixel((picture.width - 30, picture.height * 2 // 3))


def shows(picture, channel: Channel) -> bool:
    """Whether it is this channel's picture, and nothing is drawn over it."""
    wanted = bytes.fromhex(channel.colour.removeprefix("0x"))
    return all(abs(a - b) <= 24 for a, b in zip(background(picture), wanted))


def cache_folder() -> pathlib.Path:
    base = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    return pathlib.Path(os.environ.get("ORVANE_SITE_CACHE", f"{base}/orvane-live-site"))


def encode_command(channel: Channel, folder: str) -> list[str]:
    """A loop of segments in every variant: the channel's colour, its name, a clock, a moving bar."""
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
    """The folder with the channel's segments; makes it where it is not there yet."""
    return kept(lambda folder: [["mkdir", "-p", *(f"{folder}/{variant.name}" for variant in VARIANTS)],
                                encode_command(channel, folder)])


def kept(recipe: Callable[[str], list[list[str]]]) -> pathlib.Path:
    """The folder with what the commands of the recipe make there; runs them if they have not been yet."""
    text = f"2 {recipe('FOLDER')}"
    folder = cache_folder() / hashlib.sha256(text.encode()).hexdigest()[:16]
    folder.parent.mkdir(parents=True, exist_ok=True)
    # Two tests that start at once must not encode the same thing twice.
    with open(f"{folder}.lock", "w", encoding="ascii") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not folder.exists():
            unfinished = f"{folder}.new"
            shutil.rmtree(unfinished, ignore_errors=True)
            for command in recipe(unfinished):
                subprocess.run(command, check=True)
            os.rename(unfinished, folder)
    return folder


def certificate(folder: pathlib.Path) -> pathlib.Path:
    """A fresh certificate for loopback with its key, in one file."""
    path = folder / "site.pem"
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1"]
        + ["-nodes", "-days", "2", "-subj", "/CN=localhost"]
        + ["-addext", "subjectAltName=DNS:localhost,IP:127.0.0.1"]
        + ["-keyout", str(path), "-out", str(folder / "certificate.pem")],
        check=True,
        stderr=subprocess.DEVNULL,
    )
    with open(path, "a", encoding="ascii") as out:
        out.write((folder / "certificate.pem").read_text(encoding="ascii"))
    return path


class LiveSite:
    """The running site. Use as a context manager; `origin` is what ORVANE_VIDEO_SITE wants."""

    def __init__(self, folder: pathlib.Path, channels=STANDARD_CHANNELS, host="127.0.0.1"):
        self.channels = {name: Channel(name, video, colour) for name, video, colour in channels}
        self.requests: list[str] = []
        self.started = time.monotonic() - LOOP_SECONDS
        self._segments = {c.handle: encoded(c) for c in self.channels.values()}
        self._lock = threading.Lock()
        self.stopping = threading.Event()
        self._tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self._tls.load_cert_chain(certificate(folder))
        self._listen((host, 0))
        self.origin = f"https://{host}:{self._server.server_address[1]}"

    def __enter__(self) -> "LiveSite":
        self._serve()
        return self

    def __exit__(self, *_) -> None:
        self.stopping.set()
        self._server.shutdown()
        self._server.server_close()

    def _listen(self, address: tuple[str, int]) -> None:
        self._server = _Server(address, _Handler)
        self._server.site = self
        self._server.tls = self._tls

    def _serve(self) -> None:
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def die(self) -> None:
        """Whoever is connected is cut off, and nobody can connect, until it is revived."""
        self._server.shutdown()
        self._server.server_close()
        self._server.cut_off()

    def revive(self) -> None:
        self._listen(self._server.server_address)
        self._serve()

    def count(self, prefix: str) -> int:
        with self._lock:
            return sum(1 for path in self.requests if path.startswith(prefix))

    def record(self, path: str) -> None:
        with self._lock:
            self.requests.append(path)

    def take_fault(self, channel: Channel, resource: str) -> int | str | None:
        with self._lock:
            fault = channel.faults.get(resource)
            if fault is None:
                return None
            left = channel.fault_count.get(resource)
            if left is not None:
                if left <= 0:
                    return None
                channel.fault_count[resource] = left - 1
            return fault

    # Resources

    def page(self, channel: Channel) -> bytes:
        return (
            "<!DOCTYPE html><html><head><meta charset='utf-8'>"
            f"<title>{channel.handle} live</title></head><body>"
            f"<video controls><source src='{self.origin}/hls/{channel.handle}/master.m3u8' "
            "type='application/x-mpegURL'></video></body></html>"
        ).encode()

    def videos_page(self, channel: Channel) -> bytes:
        """The newest video of the channel as structured data, from which yt-dlp reads who made it."""
        video = {
            "@context": "https://schema.org",
            "@type": "VideoObject",
            "name": f"{channel.handle} news",
            "contentUrl": f"{self.origin}/hls/{channel.handle}/master.m3u8",
            "author": {"@type": "Person", "name": f"قناة {channel.handle}"},
        }
        return (
            "<!DOCTYPE html><html><head><meta charset='utf-8'>"
            f"<script type='application/ld+json'>{json.dumps(video)}</script>"
            f"<title>{channel.handle}</title></head><body></body></html>"
        ).encode()

    def master_list(self, channel: Channel) -> bytes:
        lines = ["#EXTM3U", "#EXT-X-VERSION:3"]
        for variant in VARIANTS:
            lines.append(
                f"#EXT-X-STREAM-INF:BANDWIDTH={variant.bit_rate + 100_000},"
                f"RESOLUTION={variant.width}x{variant.height},"
                'CODECS="avc1.42c01e,mp4a.40.2"'
            )
            lines.append(f"/hls/{channel.handle}/{variant.name}/list.m3u8")
        return ("\n".join(lines) + "\n").encode()

    def live_list(self, channel: Channel, variant: str) -> bytes:
        now = channel.frozen_at if channel.frozen_at is not None else time.monotonic()
        last = int((now - self.started) / SEGMENT_SECONDS)
        first = last - LIVE_SEGMENTS + 1
        per_loop = LOOP_SECONDS // SEGMENT_SECONDS
        lines = ["#EXTM3U", "#EXT-X-VERSION:3", f"#EXT-X-TARGETDURATION:{SEGMENT_SECONDS}"]
        lines.append(f"#EXT-X-MEDIA-SEQUENCE:{first}")
        lines.append(f"#EXT-X-DISCONTINUITY-SEQUENCE:{(first - 1) // per_loop}")
        for number in range(first, last + 1):
            if number % per_loop == 0:
                lines.append("#EXT-X-DISCONTINUITY")
            lines.append(f"#EXTINF:{SEGMENT_SECONDS:.1f},")
            lines.append(f"/hls/{channel.handle}/{variant}/{number}.ts")
        if channel.ends:
            lines.append("#EXT-X-ENDLIST")
        return ("\n".join(lines) + "\n").encode()

    def segment(self, channel: Channel, variant: str, number: int) -> bytes:
        index = number % (LOOP_SECONDS // SEGMENT_SECONDS)
        return (self._segments[channel.handle] / variant / f"{index}.ts").read_bytes()


class _Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 64
    site: LiveSite
    tls: ssl.SSLContext

    def __init__(self, *arguments):
        self._connections: set[ssl.SSLSocket] = set()
        super().__init__(*arguments)

    def cut_off(self) -> None:
        for connection in list(self._connections):
            # Not the farewell of TLS: that of the connection under it.
            with contextlib.suppress(OSError):
                socket.socket.shutdown(connection, socket.SHUT_RDWR)

    def finish_request(self, request, client_address):
        # The handshake belongs to the connection's own thread: a client that never finishes it must
        # not keep the others out.
        try:
            wrapped = self.tls.wrap_socket(request, server_side=True)
        except OSError:
            return
        with wrapped:
            self._connections.add(wrapped)
            try:
                super().finish_request(wrapped, client_address)
            finally:
                self._connections.discard(wrapped)

    def handle_error(self, request, client_address):
        if not isinstance(sys.exc_info()[1], OSError):
            super().handle_error(request, client_address)


class _Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    # Head and body are written apart; the second would wait for the first to be acknowledged.
    disable_nagle_algorithm = True
    server: _Server

    def log_message(self, *_):
        pass

    def do_HEAD(self):
        self.do_GET()

    def do_GET(self):
        site = self.server.site
        site.record(self.path)
        url = urllib.parse.urlsplit(self.path)
        parts = [urllib.parse.unquote(part) for part in url.path.split("/") if part]
        channel, resource, kind, body = None, "", "", None
        if url.path == "/watch":
            wanted = urllib.parse.parse_qs(url.query).get("v", [""])[0]
            channel = next((c for c in site.channels.values() if c.video_id == wanted), None)
            resource, kind = "watch", "text/html"
            body = channel and site.page(channel)
        elif len(parts) == 2 and parts[0].startswith("@"):
            channel = site.channels.get(parts[0][1:])
            resource, kind = "page", "text/html"
            if channel:
                body = site.videos_page(channel) if parts[1] == "videos" else site.page(channel)
        elif len(parts) >= 3 and parts[0] == "hls":
            channel = site.channels.get(parts[1])
            resource, kind = "list", "application/vnd.apple.mpegurl"
            if channel and parts[2] == "master.m3u8":
                resource, body = "master", site.master_list(channel)
            elif channel and parts[3] == "list.m3u8":
                body = site.live_list(channel, parts[2])
            elif channel:
                resource, kind = "segment", "video/mp2t"
                body = site.segment(channel, parts[2], int(parts[3].removesuffix(".ts")))
        fault = site.take_fault(channel, resource) if channel else None
        if fault == "hang":
            site.stopping.wait()
            return
        if fault == "loop":
            self._answer(302, "text/plain", b"", Location=site.origin + self.path)
            return
        if fault is not None or body is None:
            self._answer(int(fault or 404), "text/plain", b"")
            return
        self._answer(200, kind, body)

    def _answer(self, status: int, kind: str, body: bytes, **headers: str) -> None:
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        for name, value in headers.items():
            self.send_header(name, value)
        self.end_headers()
        if self.command != "HEAD":
            self.wfile.write(body)


def main() -> None:
    import tempfile

    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.parse_args()
    with tempfile.TemporaryDirectory() as folder, LiveSite(pathlib.Path(folder)) as site:
        print(f"ORVANE_VIDEO_SITE={site.origin}", flush=True)
        threading.Event().wait()


if __name__ == "__main__":
    main()
