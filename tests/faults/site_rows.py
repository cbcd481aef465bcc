# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults of the site and of the network."""

import os
import ssl
import subprocess
import time

from fixture import Fixture
from outcome import quit_cleanly
from rows import Row
from tools.channels import Channel
from tools.livesite import LiveSite
from tools.segments import VARIANTS
from tools.waiting import wait_until

REMUX = ["ffmpeg", "-loglevel", "error", "-nostdin", "-copyts", "-i", "-", "-muxdelay", "0"]


class AlteringSite(LiveSite):
    """Serves altered segments: `alter` makes one from the original, the channel and the number."""

    def __init__(self, folder):
        super().__init__(folder)
        self.folder = folder
        self.alter = None

    def segment(self, channel: Channel, variant: str, number: int) -> bytes:
        plain = super().segment(channel, variant, number)
        return self.alter(plain, channel, number) if self.alter else plain

    def use_wrong_certificate(self) -> None:
        """Uses a self-signed certificate for another host."""
        path = self.folder / "other.pem"
        subprocess.run(
            ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"]
            + ["-days", "1", "-subj", "/CN=elsewhere.example", "-keyout", str(path), "-out", str(path) + ".crt"],
            check=True, stderr=subprocess.DEVNULL)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(str(path) + ".crt", str(path))
        self._tls = self._server.tls = context


def remuxed(*options: str):
    def change(plain: bytes, _channel: Channel, _number: int) -> bytes:
        return subprocess.run([*REMUX, *options, "-f", "mpegts", "-"], input=plain, check=True,
                              capture_output=True).stdout
    return change


def garbage(plain: bytes, _channel: Channel, _number: int) -> bytes:
    return os.urandom(len(plain))


# Faults at the start

def refused_by_the_tool(status: int, *resources: str):
    """yt-dlp is refused, and its message is shown."""
    def check(fixture: Fixture) -> str:
        fixture.channel.faults = dict.fromkeys(resources, status)
        fixture.start()
        return fixture.error_then_retry(str(status), repair=fixture.channel.faults.clear)
    return check


def refused_by_the_server(resource: str):
    """A refused address is resolved again until it plays."""
    def check(fixture: Fixture) -> str:
        fixture.channel.faults[resource] = 403
        program = fixture.start()
        program.wait_for("loading", 3)
        assert program.count("error") == 0
        fixture.channel.faults.clear()
        return fixture.plays_again("retries repeatedly; without the fault ")
    return check


def refused_once(fixture: Fixture) -> str:
    fixture.channel.faults["list"] = 403
    fixture.channel.fault_count["list"] = 1
    program = fixture.start()
    seen = fixture.plays_again("asks for a fresh address and ")
    assert program.count("error") == 0
    assert program.count("loading") == 2
    assert fixture.site.count("/@AlArabiya/live") == 2, "the address is not a fresh one"
    return seen


def failed_by_the_player(fault: int | str, *texts: str, resource: str = "list"):
    def check(fixture: Fixture) -> str:
        fixture.channel.faults[resource] = fault
        fixture.start()
        return fixture.error_then_retry(*texts, repair=fixture.channel.faults.clear)
    return check


def hanging_page(fixture: Fixture) -> str:
    fixture.channel.faults["page"] = "hang"
    program = fixture.start()
    wait_until(lambda: fixture.site.count("/@AlArabiya/live"), "yt-dlp's request")
    seen = fixture.other_channel_plays()
    wait_until(lambda: not any("yt-dlp" in child for child in program.children()), "the end of the first yt-dlp")
    return seen


def closed_while_the_page_hangs(fixture: Fixture) -> str:
    """The program keeps running without the window, and does not play this channel at the next start."""
    fixture.channel.faults["page"] = "hang"
    program = fixture.start()
    wait_until(lambda: fixture.site.count("/@AlArabiya/live"), "yt-dlp's request")
    fixture.desktop.close(program.window())
    wait_until(lambda: not program.is_shown(), "a hidden window")
    wait_until(lambda: not program.children(), "the end of yt-dlp")
    program.wait_for_preferences(lastChannelID="")
    return "the window closes, and yt-dlp ends"


def quit_while_the_list_hangs(fixture: Fixture) -> str:
    fixture.channel.faults["list"] = "hang"
    fixture.start()
    wait_until(lambda: fixture.site.count("/hls/AlArabiya/480/list.m3u8"), "the player's request")
    quit_cleanly(fixture.program)
    return "the program quits at once"


def redirected_page(fixture: Fixture) -> str:
    fixture.channel.faults = {"page": "loop", "watch": "loop"}
    fixture.start()
    return fixture.error_then_retry("Stream resolve failed: ERROR", repair=fixture.channel.faults.clear)


def wrong_certificate(fixture: Fixture) -> str:
    fixture.site.use_wrong_certificate()
    fixture.start()
    return f"plays after {fixture.plays():.0f} s: the site's certificate is not checked"


# Faults during playback

def refused_during_playback(fixture: Fixture) -> str:
    program = fixture.start()
    fixture.plays()
    fixture.channel.faults["segment"] = 403
    program.wait_for("loading", 2)
    # The next player is refused too, in another way: its errors must be reported although it is not the first one.
    fixture.channel.faults["list"] = 403
    program.wait_for("loading", 4)
    fixture.channel.faults.clear()
    seen = fixture.plays_again("asks for a fresh address repeatedly; without the fault ")
    assert program.count("error") == 0
    return seen


def ends(fixture: Fixture) -> str:
    fixture.start()
    fixture.plays()
    fixture.channel.ends = True
    fixture.channel.frozen_at = time.monotonic()

    def repair():
        fixture.channel.ends = False
        fixture.channel.frozen_at = None

    return fixture.error_then_retry("Stream ended", repair=repair)


def frozen_list(fixture: Fixture) -> str:
    fixture.start()
    fixture.plays()
    fixture.channel.frozen_at = time.monotonic()

    def repair():
        fixture.channel.frozen_at = None

    return fixture.error_then_retry("Stream stalled", repair=repair)


def hanging_segments(fixture: Fixture) -> str:
    fixture.start()
    fixture.plays()
    fixture.channel.faults["segment"] = "hang"
    return fixture.error_then_retry(repair=fixture.channel.faults.clear)


def server_dies(fixture: Fixture) -> str:
    fixture.start()
    fixture.plays()
    fixture.site.die()
    return fixture.error_then_retry(repair=fixture.site.revive)


def garbage_during_playback(fixture: Fixture) -> str:
    fixture.start()
    fixture.plays()
    corrupted = set()

    def corrupt(plain: bytes, channel: Channel, number: int) -> bytes:
        corrupted.add(number)
        return garbage(plain, channel, number)

    fixture.site.alter = corrupt
    wait_until(lambda: len(corrupted) == 2, "two segments of garbage")
    fixture.site.alter = None
    last = max(corrupted)
    wait_until(lambda: fixture.site.count(f"/hls/AlArabiya/480/{last + 2}.ts"), "the segments after them")
    return fixture.plays_again("two segments of garbage are skipped; ")


def garbage_at_the_start(fixture: Fixture) -> str:
    fixture.site.alter = garbage
    fixture.start()

    def repair():
        fixture.site.alter = None

    return fixture.error_then_retry(repair=repair)


# Faults that end, without a click

def heals(seconds: float, within: float, **faults: int | str):
    """The channel fails at the start. The picture may need the delay of the schedule, and an attempt."""
    def check(fixture: Fixture) -> str:
        fixture.channel.faults = faults
        fixture.start()
        return fixture.heals_after(seconds, within, repair=fixture.channel.faults.clear)
    return check


def site_down(fixture: Fixture) -> str:
    fixture.site.die()
    fixture.start()
    return fixture.heals_after(40, 75, repair=fixture.site.revive)


def starts_again(fixture: Fixture) -> str:
    fixture.start()
    fixture.plays()
    fixture.channel.ends = True
    fixture.channel.frozen_at = time.monotonic()

    def repair():
        fixture.channel.ends = False
        fixture.channel.frozen_at = None

    return fixture.heals_after(20, 75, repair=repair)


# Streams of another kind

def altered(*options: str):
    def check(fixture: Fixture) -> str:
        fixture.site.alter = remuxed(*options)
        fixture.start()
        return f"plays after {fixture.plays():.0f} s"
    return check


def audio_only(fixture: Fixture) -> str:
    fixture.site.alter = remuxed("-map", "0:a", "-c", "copy")
    program = fixture.start()
    program.wait_for("playing")
    segments = fixture.site.count("/hls/AlArabiya/480/")
    wait_until(lambda: fixture.site.count("/hls/AlArabiya/480/") > segments + 4, "two more segments and lists")
    assert fixture.ask("status") == "Playing"
    assert program.count("error") == 0
    return "plays the sound, without an overlay"


def changing_size(fixture: Fixture) -> str:
    sizes = set()

    def alternate(_plain: bytes, channel: Channel, number: int) -> bytes:
        variant = VARIANTS[number % len(VARIANTS)].name
        sizes.add(variant)
        return LiveSite.segment(fixture.site, channel, variant, number)

    fixture.site.alter = alternate
    program = fixture.start()
    fixture.plays()
    frame = program.frame()
    segments = fixture.site.count("/hls/AlArabiya/480/")
    wait_until(lambda: fixture.site.count("/hls/AlArabiya/480/") > segments + 8, "four more segments and lists")
    assert len(sizes) == len(VARIANTS)
    assert program.frame() == frame
    assert program.count("error") == 0
    return f"keeps playing in a window of the same size ({fixture.plays():.0f} s)"


ALTERED = {"site_class": AlteringSite}
ROWS = [
    Row("site.page-403", "403 on the page", refused_by_the_tool(403, "page", "watch")),
    Row("site.page-404", "404 on the page", refused_by_the_tool(404, "page", "watch")),
    Row("site.page-500", "500 on the page", refused_by_the_tool(500, "page", "watch")),
    Row("site.master-403", "403 on the master list", refused_by_the_tool(403, "master")),
    Row("site.variant-403", "403 on the variant's list", refused_by_the_server("list")),
    Row("site.variant-403-once", "403 on the variant's list, once", refused_once),
    Row("site.segment-403", "403 on segments, from the start", refused_by_the_server("segment")),
    Row("site.segment-403-later", "403 on segments, during playback", refused_during_playback),
    Row("site.variant-404", "404 on the variant's list", failed_by_the_player(404, "404")),
    Row("site.variant-500", "500 on the variant's list", failed_by_the_player(500, "HTTP error")),
    Row("site.list-stands", "the list stops advancing", frozen_list),
    Row("site.ends", "the stream ends, and returns after the error", ends),
    Row("site.page-hangs", "the page request hangs", hanging_page),
    Row("site.page-hangs-close", "the page request hangs, and the window is closed", closed_while_the_page_hangs),
    Row("site.variant-hangs", "the request for the variant's list hangs", failed_by_the_player("hang")),
    Row("site.variant-hangs-quit", "the request for the variant's list hangs, and the program quits",
        quit_while_the_list_hangs, quits=False),
    Row("site.segments-hang", "segment requests hang during playback", hanging_segments),
    Row("site.server-dies", "the server dies, and returns after the error", server_dies),
    Row("site.heals-down", "the site is down for 40 s", site_down),
    Row("site.heals-not-live", "no stream on the page for 20 s", heals(20, 30, page="empty", watch="empty")),
    Row("site.heals-page-404", "404 on the page for 30 s", heals(30, 75, page=404, watch=404)),
    Row("site.heals-ends", "the stream ends, and starts again after 20 s", starts_again),
    Row("site.page-loops", "the page redirects to itself", redirected_page),
    Row("site.variant-loops", "the variant's list redirects to itself", failed_by_the_player("loop")),
    Row("site.certificate", "the certificate is for another host", wrong_certificate, fixture=ALTERED),
    Row("site.garbage", "every segment is garbage", garbage_at_the_start, fixture=ALTERED),
    Row("site.garbage-later", "two segments are garbage during playback", garbage_during_playback, fixture=ALTERED),
    Row("site.audio-only", "a stream without video", audio_only, fixture=ALTERED),
    Row("site.video-only", "a stream without sound", altered("-map", "0:v", "-c", "copy"), fixture=ALTERED),
    Row("site.changing-size", "the size of the video changes every 2 s", changing_size, fixture=ALTERED),
    Row("site.one-a-second", "one frame per second",
        altered("-vf", "fps=1", "-c:v", "libx264", "-preset", "ultrafast", "-c:a", "copy"), fixture=ALTERED),
]
