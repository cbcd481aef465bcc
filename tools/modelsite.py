# SPDX-License-Identifier: GPL-3.0-or-later
"""A model of the video site as yt-dlp's own extractor for it sees the site: the channel page, the watch page, the
player interface for each client, and live lists with picture and sound in one or apart. It must be served under
the site's own name, in a network of its own; see tools/field.py.

What the site does is a `Model`; one can be replaced while the site runs.
"""

from __future__ import annotations

import json
import pathlib
import time
import urllib.parse
from collections.abc import Callable
from dataclasses import dataclass, field

from tools.channels import Channel
from tools.livesite import LiveSite
from tools.segments import LOOP_SECONDS, SEGMENT_SECONDS, VARIANTS, cached, encoded

HOST = "www.youtube.com"
HOSTS = (HOST, "m.youtube.com", "music.youtube.com", "youtube.com")
# Clients whose lists have picture and sound in one; those of the others have them apart.
MUXED_CLIENTS = ("ANDROID", "IOS")
# The site's numbers of the lists, by which yt-dlp tells them apart.
ITAGS = {"360": 93, "480": 94, "picture360": 230, "picture480": 231, "sound": 234}
APP_CLIENTS = ("ANDROID", "IOS")
OLDEST_APP = (19, 46)


@dataclass(frozen=True)
class Refusal:
    """403 on live lists, from and until a number of seconds after the model began or the list was opened."""

    clients: tuple[str, ...] = ()  # Empty: all.
    after_opening: float = 0
    until: float = float("inf")


@dataclass(frozen=True)
class Model:
    """What the site does. `status` answers instead of a stream, until `status_until` seconds have passed."""

    name: str
    oldest_app: tuple[int, int] = OLDEST_APP
    # Clients that get a live list at all.
    clients: tuple[str, ...] = ("ANDROID", "IOS", "VISIONOS", "WEB", "WEB_SAFARI", "MWEB", "TVHTML5", "TVHTML5_TIZEN")
    refusals: tuple[Refusal, ...] = ()
    status: dict | None = None
    status_until: float = float("inf")
    # Whether the channel's page leads to a video.
    is_live: bool = True


TOO_OLD = {"status": "ERROR", "reason": "This app version is no longer supported. Please update to the latest version."}
BOT = {"status": "LOGIN_REQUIRED", "reason": "Sign in to confirm you’re not a bot"}
SOON = {"status": "LIVE_STREAM_OFFLINE", "reason": "This live event will begin in a few moments."}
GONE = {"status": "ERROR", "reason": "This video has been removed by the uploader"}

ALL_CLIENTS = Model("").clients
MODELS = (
    Model("as-today"),
    Model("no-android-lists", clients=tuple(c for c in ALL_CLIENTS if c != "ANDROID")),
    Model("ios-refused-after-30-s", clients=("IOS", "VISIONOS"), refusals=(Refusal(("IOS",), after_opening=30),)),
    Model("app-too-old", oldest_app=(99, 0)),
    Model("bot-check", status=BOT),
    Model("not-live-yet", status=SOON, status_until=20),
    Model("video-gone", status=GONE),
    Model("refused-for-20-s", refusals=(Refusal(until=20),)),
    Model("refused-for-ever", refusals=(Refusal(),)),
    # Changes in the middle of play: the app clients' lists end, and are not given out any more.
    Model("changes-after-20-s", refusals=(Refusal(("ANDROID", "IOS"), after_opening=20),)),
)


@dataclass
class Request:
    at: float
    path: str
    client: str = ""


class ModelSite(LiveSite):
    """The running site. Use as a context manager."""

    def __init__(self, folder: pathlib.Path, model: Model, host: str = "127.0.0.1", port: int = 443):
        super().__init__(folder, host=host, port=port)
        self.origin = f"https://{HOST}"
        self.model = model
        self.began = time.monotonic()
        self.log: list[Request] = []
        self._opened: dict[str, float] = {}
        self._apart = {c.handle: split(c) for c in self.channels.values()}

    def age(self) -> float:
        return time.monotonic() - self.began

    def answer_otherwise(self, handler) -> bool:
        url = urllib.parse.urlsplit(handler.path)
        parts = [urllib.parse.unquote(part) for part in url.path.split("/") if part]
        if url.path == "/youtubei/v1/player":
            body = json.loads(handler.rfile.read(int(handler.headers.get("Content-Length", 0))))
            answer = self._player_answer(body)
            self.log.append(Request(self.age(), url.path, body["context"]["client"]["clientName"]))
            handler.answer(200, "application/json", json.dumps(answer).encode())
            return True
        self.log.append(Request(self.age(), handler.path))
        if parts[:1] == ["live"]:
            self._answer_list(handler, parts[1], self.channels[parts[2]], parts[-1].removesuffix(".m3u8"))
            return True
        return False

    # Pages

    def page(self, channel: Channel) -> bytes:
        if not self.model.is_live:
            tab = {"selected": True, "title": "Home", "content": {},
                   "endpoint": {"commandMetadata": {"webCommandMetadata": {"url": f"/@{channel.handle}/featured"}}}}
            data = {"contents": {"twoColumnBrowseResultsRenderer": {"tabs": [{"tabRenderer": tab}]}}}
        else:
            data = {"contents": {"twoColumnWatchNextResults": {}},
                    "currentVideoEndpoint": {"watchEndpoint": {"videoId": channel.video_id}}}
        config = {"INNERTUBE_API_KEY": "key", "INNERTUBE_CLIENT_VERSION": "2.20261026.01.00",
                  "INNERTUBE_CONTEXT": {"client": {"clientName": "WEB", "clientVersion": "2.20261026.01.00"}}}
        return (
            "<!DOCTYPE html><html><head><meta charset='utf-8'>"
            f"<script>ytcfg.set({json.dumps(config)});</script>"
            f"<script>var ytInitialData = {json.dumps(data)};</script>"
            f"<script>var ytInitialPlayerResponse = {json.dumps(self._response(channel, 'WEB'))};</script>"
            f"<title>{channel.handle}</title></head><body></body></html>"
        ).encode()

    # The player interface

    def _player_answer(self, body: dict) -> dict:
        client = body["context"]["client"]
        channel = next((c for c in self.channels.values() if c.video_id == body["videoId"]), None)
        if channel is None:
            return {"playabilityStatus": {"status": "ERROR", "reason": "Video unavailable"}}
        if client["clientName"] in APP_CLIENTS and version(client["clientVersion"]) < self.model.oldest_app:
            return {"playabilityStatus": TOO_OLD}
        return self._response(channel, client["clientName"])

    def _response(self, channel: Channel, client: str) -> dict:
        details = {"videoId": channel.video_id, "title": f"{channel.handle} live", "lengthSeconds": "0", "isLive": True,
                   "isLiveContent": True, "channelId": f"UC{channel.video_id}", "author": channel.handle,
                   "shortDescription": "", "viewCount": "5", "isPrivate": False}
        if self.model.status and self.age() < self.model.status_until:
            answer = {"playabilityStatus": self.model.status}
            return answer | ({"videoDetails": details | {"isLive": False, "isUpcoming": True}}
                             if self.model.status is SOON else {})
        answer = {"playabilityStatus": {"status": "OK", "playableInEmbed": True}, "videoDetails": details,
                  "streamingData": {"expiresInSeconds": "21540"}}
        if client in self.model.clients:
            answer["streamingData"]["hlsManifestUrl"] = f"{self.origin}/live/{client}/{channel.handle}/master.m3u8"
        return answer

    # Live lists

    def _answer_list(self, handler, client: str, channel: Channel, name: str) -> None:
        # yt-dlp reads the master list before it gives an address; only what plays is refused.
        if name != "master" and self._refuses(client, channel):
            handler.answer(403, "text/plain", b"")
            return
        body = self._master(client, channel) if name == "master" else self.live_list(channel, name)
        handler.answer(200, "application/vnd.apple.mpegurl", body)

    def _refuses(self, client: str, channel: Channel) -> bool:
        opened = self._opened.setdefault(f"{client} {channel.handle}", time.monotonic())
        for refusal in self.model.refusals:
            if refusal.clients and client not in refusal.clients:
                continue
            if self.age() < refusal.until and time.monotonic() - opened >= refusal.after_opening:
                return True
        return False

    def _master(self, client: str, channel: Channel) -> bytes:
        def address(name: str) -> str:
            return f"{self.origin}/live/{client}/{channel.handle}/itag/{ITAGS[name]}/{name}.m3u8"

        lines = ["#EXTM3U", "#EXT-X-VERSION:6"]
        muxed = client in MUXED_CLIENTS
        if not muxed:
            lines.append('#EXT-X-MEDIA:TYPE=AUDIO,GROUP-ID="sound",NAME="Default",DEFAULT=YES,AUTOSELECT=YES,'
                         f'URI="{address("sound")}"')
        for variant in VARIANTS:
            group = "" if muxed else ',AUDIO="sound"'
            lines.append(f"#EXT-X-STREAM-INF:BANDWIDTH={variant.bit_rate + 100_000},RESOLUTION={variant.width}x"
                         f'{variant.height},FRAME-RATE=25,CODECS="avc1.42c01e,mp4a.40.2"{group}')
            lines.append(address(variant.name if muxed else f"picture{variant.name}"))
        return ("\n".join(lines) + "\n").encode()

    def segment(self, channel: Channel, variant: str, number: int) -> bytes:
        if variant[0].isdigit():
            return super().segment(channel, variant, number)
        index = number % (LOOP_SECONDS // SEGMENT_SECONDS)
        return (self._apart[channel.handle] / variant / f"{index}.ts").read_bytes()


def version(text: str) -> tuple[int, ...]:
    return tuple(int(part) for part in text.split(".")[:2])


def split(channel: Channel) -> pathlib.Path:
    """Returns the folder with the channel's segments with picture and sound apart; makes it first if necessary."""
    whole = encoded(channel)
    remux = "ffmpeg -loglevel error -nostdin -y -copyts -i {source} -map 0:{kind} -c copy -muxdelay 0 {target}"
    commands = []
    for name, kind, source in [("sound", "a", VARIANTS[0].name)] + [(f"picture{v.name}", "v", v.name) for v in VARIANTS]:
        loop = f'for f in {whole}/{source}/*.ts; do ' + remux.format(
            source='"$f"', kind=kind, target=f'"FOLDER/{name}/${{f##*/}}"') + " || exit 1; done"
        commands.append((name, loop))
    return cached(lambda folder: [["mkdir", "-p", *(f"{folder}/{name}" for name, _ in commands)]]
                  + [["sh", "-c", loop.replace("FOLDER", folder)] for _, loop in commands])
