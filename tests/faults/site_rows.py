# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults of the site and of the network."""

import os
import ssl
import subprocess
import time

from ground import Ground
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

    def take_certificate_of_another(self) -> None:
        """Uses one for another host, self-signed."""
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
    def check(ground: Ground) -> str:
        ground.channel.faults = dict.fromkeys(resources, status)
        ground.start()
        return ground.error_then_retry(str(status), heal=ground.channel.faults.clear)
    return check


def refused_by_the_server(resource: str):
    """A refused address is resolved again until it works."""
    def check(ground: Ground) -> str:
        ground.channel.faults[resource] = 403
        program = ground.start()
        program.wait_for("loading", 3)
        assert program.count("error") == 0
        ground.channel.faults.clear()
        return ground.plays_again("tries again and again; without the fault ")
    return check


def refused_once(ground: Ground) -> str:
    ground.channel.faults["list"] = 403
    ground.channel.fault_count["list"] = 1
    program = ground.start()
    seen = ground.plays_again("asks for a fresh address and ")
    assert program.count("error") == 0
    assert program.count("loading") == 2
    assert ground.site.count("/@AlArabiya/live") == 2, "the address is not a fresh one"
    return seen


def failed_by_the_player(fault: int | str, *texts: str, resource: str = "list"):
    def check(ground: Ground) -> str:
        ground.channel.faults[resource] = fault
        ground.start()
        return ground.error_then_retry(*texts, heal=ground.channel.faults.clear)
    return check


def hanging_page(ground: Ground) -> str:
    ground.channel.faults["page"] = "hang"
    program = ground.start()
    wait_until(lambda: ground.site.count("/@AlArabiya/live"), "yt-dlp's request")
    seen = ground.other_channel_plays()
    wait_until(lambda: not any("yt-dlp" in child for child in program.children()), "the end of the first yt-dlp")
    return seen


def closed_while_the_page_hangs(ground: Ground) -> str:
    """The program goes on without the window, and does not play this channel at the next start."""
    ground.channel.faults["page"] = "hang"
    program = ground.start()
    wait_until(lambda: ground.site.count("/@AlArabiya/live"), "yt-dlp's request")
    ground.desktop.close(program.window())
    wait_until(lambda: not program.is_shown(), "a hidden window")
    wait_until(lambda: not program.children(), "the end of yt-dlp")
    program.wait_for_preferences(lastChannelID="")
    return "the window goes, and yt-dlp with it"


def quit_while_the_list_hangs(ground: Ground) -> str:
    ground.channel.faults["list"] = "hang"
    ground.start()
    wait_until(lambda: ground.site.count("/hls/AlArabiya/480/list.m3u8"), "the player's request")
    quit_cleanly(ground.program)
    return "the program quits at once"


def redirected_page(ground: Ground) -> str:
    ground.channel.faults = {"page": "loop", "watch": "loop"}
    ground.start()
    return ground.error_then_retry("Stream resolve failed: ERROR", heal=ground.channel.faults.clear)


def wrong_certificate(ground: Ground) -> str:
    ground.site.take_certificate_of_another()
    ground.start()
    return f"plays after {ground.plays():.0f} s: the site's certificate is not looked at"


# Faults in the middle

def refused_in_the_middle(ground: Ground) -> str:
    program = ground.start()
    ground.plays()
    ground.channel.faults["segment"] = 403
    program.wait_for("loading", 2)
    # The next player is refused too, in another way: its errors must be heard although it is not the first one.
    ground.channel.faults["list"] = 403
    program.wait_for("loading", 4)
    ground.channel.faults.clear()
    seen = ground.plays_again("asks for a fresh address again and again; without the fault ")
    assert program.count("error") == 0
    return seen


def ends(ground: Ground) -> str:
    ground.start()
    ground.plays()
    ground.channel.ends = True
    ground.channel.frozen_at = time.monotonic()

    def heal():
        ground.channel.ends = False
        ground.channel.frozen_at = None

    return ground.error_then_retry("Stream ended", heal=heal)


def standing_list(ground: Ground) -> str:
    ground.start()
    ground.plays()
    ground.channel.frozen_at = time.monotonic()

    def heal():
        ground.channel.frozen_at = None

    return ground.error_then_retry("Stream stalled", heal=heal)


def hanging_segments(ground: Ground) -> str:
    ground.start()
    ground.plays()
    ground.channel.faults["segment"] = "hang"
    return ground.error_then_retry(heal=ground.channel.faults.clear)


def server_dies(ground: Ground) -> str:
    ground.start()
    ground.plays()
    ground.site.die()
    return ground.error_then_retry(heal=ground.site.revive)


def garbage_in_the_middle(ground: Ground) -> str:
    ground.start()
    ground.plays()
    spoilt = set()

    def spoil(plain: bytes, channel: Channel, number: int) -> bytes:
        spoilt.add(number)
        return garbage(plain, channel, number)

    ground.site.alter = spoil
    wait_until(lambda: len(spoilt) == 2, "two segments of garbage")
    ground.site.alter = None
    last = max(spoilt)
    wait_until(lambda: ground.site.count(f"/hls/AlArabiya/480/{last + 2}.ts"), "segments after those")
    return ground.plays_again("two segments of garbage are passed over; ")


def garbage_at_the_start(ground: Ground) -> str:
    ground.site.alter = garbage
    ground.start()

    def heal():
        ground.site.alter = None

    return ground.error_then_retry(heal=heal)


# Streams of another kind

def altered(*options: str):
    def check(ground: Ground) -> str:
        ground.site.alter = remuxed(*options)
        ground.start()
        return f"plays after {ground.plays():.0f} s"
    return check


def audio_only(ground: Ground) -> str:
    ground.site.alter = remuxed("-map", "0:a", "-c", "copy")
    program = ground.start()
    program.wait_for("playing")
    segments = ground.site.count("/hls/AlArabiya/480/")
    wait_until(lambda: ground.site.count("/hls/AlArabiya/480/") > segments + 4, "two more segments and lists")
    assert ground.ask("status") == "Playing"
    assert program.count("error") == 0
    return "plays the sound without a picture, and no overlay stays"


def changing_size(ground: Ground) -> str:
    sizes = set()

    def alternate(_plain: bytes, channel: Channel, number: int) -> bytes:
        variant = VARIANTS[number % len(VARIANTS)].name
        sizes.add(variant)
        return LiveSite.segment(ground.site, channel, variant, number)

    ground.site.alter = alternate
    program = ground.start()
    ground.plays()
    frame = program.frame()
    segments = ground.site.count("/hls/AlArabiya/480/")
    wait_until(lambda: ground.site.count("/hls/AlArabiya/480/") > segments + 8, "four more segments and lists")
    assert len(sizes) == len(VARIANTS)
    assert program.frame() == frame
    assert program.count("error") == 0
    return f"plays on in a window that stays as it is ({ground.plays():.0f} s)"


ALTERED = {"site_class": AlteringSite}
ROWS = [
    Row("site.page-403", "403 on the page", refused_by_the_tool(403, "page", "watch")),
    Row("site.page-404", "404 on the page", refused_by_the_tool(404, "page", "watch")),
    Row("site.page-500", "500 on the page", refused_by_the_tool(500, "page", "watch")),
    Row("site.master-403", "403 on the master list", refused_by_the_tool(403, "master")),
    Row("site.variant-403", "403 on the variant's list", refused_by_the_server("list")),
    Row("site.variant-403-once", "403 on the variant's list, once", refused_once),
    Row("site.segment-403", "403 on segments, from the start", refused_by_the_server("segment")),
    Row("site.segment-403-later", "403 on segments, in the middle", refused_in_the_middle),
    Row("site.variant-404", "404 on the variant's list", failed_by_the_player(404, "404")),
    Row("site.variant-500", "500 on the variant's list", failed_by_the_player(500, "HTTP error")),
    Row("site.list-stands", "the list stops advancing", standing_list),
    Row("site.ends", "the stream ends, and returns after the error", ends),
    Row("site.page-hangs", "the page never comes", hanging_page),
    Row("site.page-hangs-close", "the page never comes, and the window is closed", closed_while_the_page_hangs),
    Row("site.variant-hangs", "the variant's list never comes", failed_by_the_player("hang")),
    Row("site.variant-hangs-quit", "the variant's list never comes, and the program quits",
        quit_while_the_list_hangs, quits=False),
    Row("site.segments-hang", "segments stop coming in the middle", hanging_segments),
    Row("site.server-dies", "the server dies, and returns after the error", server_dies),
    Row("site.page-loops", "the page redirects to itself for ever", redirected_page),
    Row("site.variant-loops", "the variant's list redirects to itself", failed_by_the_player("loop")),
    Row("site.certificate", "the certificate is for another host", wrong_certificate, ground=ALTERED),
    Row("site.garbage", "every segment is garbage", garbage_at_the_start, ground=ALTERED),
    Row("site.garbage-later", "two segments in the middle are garbage", garbage_in_the_middle, ground=ALTERED),
    Row("site.audio-only", "a stream without a picture", audio_only, ground=ALTERED),
    Row("site.video-only", "a stream without sound", altered("-map", "0:v", "-c", "copy"), ground=ALTERED),
    Row("site.changing-size", "the picture's size changes every 2 s", changing_size, ground=ALTERED),
    Row("site.one-a-second", "one picture a second",
        altered("-vf", "fps=1", "-c:v", "libx264", "-preset", "ultrafast", "-c:a", "copy"), ground=ALTERED),
]
