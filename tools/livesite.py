# SPDX-License-Identifier: GPL-3.0-or-later
"""A live video site on loopback, over HTTPS.

It answers a channel's live page ("/@HANDLE/live"), its videos page ("/@HANDLE/videos") and the watch page
("/watch?v=ID") with pages that yt-dlp reads by itself, and serves each channel as a multi-variant live HLS
stream whose list slides with the clock. Faults can be set per channel at any time (see `Channel.faults`);
every request is recorded.

usage: python3 -m tools.livesite    serves until it is interrupted; prints the variable to set
"""

from __future__ import annotations

import argparse
import contextlib
import http.server
import json
import pathlib
import socket
import ssl
import sys
import tempfile
import threading
import time
import urllib.parse

from tools.certificates import certificate
from tools.channels import STANDARD_CHANNELS, Channel
from tools.segments import LOOP_SECONDS, SEGMENT_SECONDS, VARIANTS, encoded

LIVE_SEGMENTS = 5


class LiveSite:
    """The running site. Use as a context manager; `origin` is the value for ORVANE_VIDEO_SITE."""

    def __init__(self, folder: pathlib.Path, channels=STANDARD_CHANNELS, host="127.0.0.1", port=0):
        self.channels = {name: Channel(name, video, colour) for name, video, colour in channels}
        self.requests: list[str] = []
        self.started = time.monotonic() - LOOP_SECONDS
        self._segments = {c.handle: encoded(c) for c in self.channels.values()}
        self._lock = threading.Lock()
        self.stopping = threading.Event()
        self._tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self._tls.load_cert_chain(certificate(folder))
        self._listen((host, port))
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
        """Cuts all connections off and accepts none until `revive`."""
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

    def answer_otherwise(self, _handler: "_Handler") -> bool:
        """Subclasses answer requests of their own here; returns whether they have."""
        return False

    # Resources

    def page(self, channel: Channel) -> bytes:
        return (
            "<!DOCTYPE html><html><head><meta charset='utf-8'>"
            f"<title>{channel.handle} live</title></head><body>"
            f"<video controls><source src='{self.origin}/hls/{channel.handle}/master.m3u8' "
            "type='application/x-mpegURL'></video></body></html>"
        ).encode()

    def videos_page(self, channel: Channel) -> bytes:
        """Has the newest video of the channel as structured data, from which yt-dlp reads the author."""
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
            # Shuts down the TCP connection: a TLS shutdown would wait for the peer.
            with contextlib.suppress(OSError):
                socket.socket.shutdown(connection, socket.SHUT_RDWR)

    def finish_request(self, request, client_address):
        # On the connection's own thread: a client that never finishes the handshake must not block
        # the others.
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
    # Head and body are separate writes: with Nagle's algorithm the second waits for the first's ACK.
    disable_nagle_algorithm = True
    server: _Server

    def log_message(self, *_):
        pass

    def do_HEAD(self):
        self.do_GET()

    def do_POST(self):
        self.do_GET()

    def do_GET(self):
        site = self.server.site
        site.record(self.path)
        if site.answer_otherwise(self):
            return
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
                number = parts[3].removesuffix(".ts")
                # A player that takes a page for a list asks for its lines.
                body = site.segment(channel, parts[2], int(number)) if number.isdigit() else None
        fault = site.take_fault(channel, resource) if channel else None
        if fault == "hang":
            site.stopping.wait()
            return
        if fault == "loop":
            self.answer(302, "text/plain", b"", Location=site.origin + self.path)
            return
        if fault == "empty":
            self.answer(200, kind, b"<!DOCTYPE html><html><head><title>No stream</title></head></html>")
            return
        if fault is not None or body is None:
            self.answer(int(fault or 404), "text/plain", b"")
            return
        self.answer(200, kind, body)

    def answer(self, status: int, kind: str, body: bytes, **headers: str) -> None:
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body)))
        for name, value in headers.items():
            self.send_header(name, value)
        self.end_headers()
        if self.command != "HEAD":
            self.wfile.write(body)


def main() -> None:
    argparse.ArgumentParser(description=__doc__.splitlines()[0]).parse_args()
    with tempfile.TemporaryDirectory() as folder, LiveSite(pathlib.Path(folder)) as site:
        print(f"ORVANE_VIDEO_SITE={site.origin}", flush=True)
        threading.Event().wait()


if __name__ == "__main__":
    main()
