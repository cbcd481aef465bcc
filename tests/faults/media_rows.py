# SPDX-License-Identifier: GPL-3.0-or-later
"""Streams that are unusual, or made to do harm."""

import contextlib
import itertools
import pathlib
import signal
import socket
import subprocess
import time
import zlib

from desktop_rows import PULSE
from fixture import Fixture
from outcome import BUILD
from rows import Row
from site_rows import AlteringSite
from tools.channels import STANDARD_CHANNELS, Channel
from tools.images import is_near
from tools.processes import cpu_share, peak_mib, resident_mib, threads
from tools.program import wait_for_standstill
from tools.segments import cached, encoded
from tools.waiting import stays, wait_until

# MiB, above what the program held before: at the peak, and soon after the failure. The sanitizers keep what was freed.
PEAK, HELD = (900, 80) if "asan" not in BUILD else (3000, 900)
LIST = "/hls/AlArabiya/480/list.m3u8"


class HostileSite(AlteringSite):
    """`answers` maps the beginning of a path to what answers instead: a function of the handler."""

    def __init__(self, folder):
        super().__init__(folder)
        self.answers = {}

    def answer_otherwise(self, handler) -> bool:
        answer = next((answer for path, answer in self.answers.items() if handler.path.startswith(path)), None)
        if answer is None:
            return False
        answer(handler)
        return True


def text(body: str):
    return lambda handler: handler.answer(200, "text/plain", body.encode())


# Lists of a public site that lead to this machine

LOCAL_HOSTS = ("127.0.0.1", "localhost", "127.1", "2130706433", "0x7f.1", "[::1]", "[::ffff:127.0.0.1]", "LocalHost.",
               "stream.localhost")


def leads_here(fixture: Fixture) -> str:
    """The site has a public name, which leads to this machine only by the program's hosts file."""
    site = fixture.site
    port = site.origin.rpartition(":")[2]
    site.origin = f"https://live.example.org:{port}"
    hosts = fixture.folder / "hosts"
    hosts.write_text("127.0.0.1 localhost live.example.org\n::1 localhost\n", encoding="ascii")
    secrets = [f"https://{host}:{port}/secret.ts" for host in LOCAL_HOSTS]
    moved = [f"/moved/{number}.ts" for number in range(len(secrets))]
    body = "#EXTM3U\n#EXT-X-TARGETDURATION:2\n" + "".join(f"#EXTINF:2,\n{x}\n" for x in [*moved, *secrets])
    site.answers[LIST] = text(body + "#EXT-X-ENDLIST\n")
    for path, secret in zip(moved, secrets):
        site.answers[path] = lambda handler, secret=secret: handler.answer(302, "text/plain", b"", Location=secret)
    fixture.start(mounts=f"mount --bind {hosts} /etc/hosts")
    said = fixture.error()
    asked = site.count("/secret")
    assert site.count("/moved") >= len(moved)
    assert not asked, f"{asked} requests to this machine"
    site.answers.clear()
    return f'"{said}"; no request; {fixture.retry()}'


# Rotated pictures

def lying(degrees: int):
    """Turns the coded picture, and has the stream say that it must be turned back by so many degrees clockwise."""
    turns = {90: "transpose=cclock", 180: "hflip,vflip", 270: "transpose=clock"}
    made = {}

    def alter(plain: bytes, _channel: Channel, number: int) -> bytes:
        if number not in made:
            # The bit stream counts anticlockwise. Only key frames are marked, so all frames are.
            made[number] = subprocess.run(
                ["ffmpeg", "-loglevel", "error", "-nostdin", "-copyts", "-i", "-", "-muxdelay", "0", "-vf", turns[degrees],
                 "-c:v", "libx264", "-preset", "ultrafast", "-g", "1", "-c:a", "copy", "-bsf:v",
                 f"h264_metadata=display_orientation=insert:rotate={360 - degrees}", "-f", "mpegts", "-"],
                input=plain, check=True, capture_output=True).stdout
        return made[number]
    return alter


def is_upright(picture, channel: Channel) -> bool:
    """Whether the picture fills the width of the window, with the white bar upright above the texts."""
    width, height = picture.size
    colour = bytes.fromhex(channel.colour.removeprefix("0x"))
    corners = [(x, y) for x in (4, width - 5) for y in (height // 8, height - 5)]
    if not all(is_near(picture.getpixel(corner), colour, 40) for corner in corners):
        return False
    white = picture.convert("L").point(lambda value: 255 * (value > 200)).crop((0, 0, width, height * 4 // 9))
    frame = white.getbbox()
    return frame is not None and frame[3] - frame[1] > 2 * (frame[2] - frame[0])


def rotated(**variables: str):
    """Each turn begins in mid-play."""
    def check(fixture: Fixture) -> str:
        program = fixture.start(**variables)
        fixture.plays()
        for degrees in (90, 180, 270, None):
            alter = lying(degrees) if degrees else None
            first = []

            def note(plain, channel, number, alter=alter, first=first):
                first.append(number)
                return alter(plain, channel, number) if alter else plain

            fixture.site.alter = note
            wait_until(lambda: len(first) >= 3, "three segments")
            wait_until(lambda: program.is_running() and is_upright(program.video(), fixture.channel),
                       f"an upright picture of {degrees} degrees")
        fixture.plays()
        return "upright in mid-play with 90, 180, 270 and 0 degrees"
    return check


# Lists that lead elsewhere

def follows_nothing(body):
    """`body` makes the list from the site's origin. What it names may not be asked for."""
    def check(fixture: Fixture) -> str:
        fixture.site.answers[LIST] = text(body(fixture.site.origin))
        fixture.start()
        said = fixture.error_then_retry(repair=fixture.site.answers.clear)
        requests = fixture.site.count(LIST) + fixture.site.count("/elsewhere")
        # The retry asks for a few lists while it plays.
        assert requests < 20, f"{requests} requests"
        return f"{said}; {requests} requests in all"
    return check


def edit_list(origin: str) -> str:
    address = f"{origin}{LIST}"
    return f"# mpv EDL v0\n%{len(address)}%{address},0,10\n"


def plain_list(origin: str) -> str:
    return "".join(f"{origin}/elsewhere/{number}\n" for number in range(3000))


def files() -> pathlib.Path:
    """Returns a folder with the channel's first seconds as files."""
    def recipe(folder: str) -> list[list[str]]:
        plain = "concat:" + "|".join(f"{encoded(Channel(*STANDARD_CHANNELS[0]))}/480/{i}.ts" for i in range(5))
        make = ["ffmpeg", "-loglevel", "error", "-nostdin", "-i", plain]
        return [["mkdir", folder], [*make, "-c", "copy", "-movflags", "+faststart", f"{folder}/x.mp4"],
                [*make, "-c:v", "libvpx", "-deadline", "realtime", "-cpu-used", "8", "-c:a", "libopus", f"{folder}/x.webm"]]
    return cached(recipe)


def plain_files(fixture: Fixture) -> str:
    def serve(kind: str) -> None:
        body = (files() / f"x.{kind}").read_bytes()
        fixture.site.answers[LIST] = lambda handler: handler.answer(200, f"video/{kind}", body)

    serve("mp4")
    fixture.start()
    fixture.plays()
    fixture.error_then_retry("Stream ended", repair=lambda: serve("webm"))
    fixture.error("Stream ended", count=2)
    return "MP4 and WebM play to their ends"


def odd_port(fixture: Fixture) -> str:
    """The list is on a port that refuses connections, and whose number has the digits of a refusal."""
    for port in (14031, 24031, 34031, 40301, 44031):
        try:
            closed = fixture.enter(socket.create_server(("127.0.0.1", port), backlog=0))
        except OSError:
            continue
        break
    closed.close()
    master = fixture.site.master_list(fixture.channel).decode()
    moved = master.replace("/hls/", f"https://127.0.0.1:{port}/hls/")
    fixture.site.answers["/hls/AlArabiya/master.m3u8"] = text(moved)
    program = fixture.start()
    said = fixture.error_then_retry("Connection", "refused", repair=fixture.site.answers.clear)
    loads = program.count("loading")
    assert loads == 2, f"{loads} openings"
    return f"{said}; {loads} openings"


# Lists that take memory

SEGMENT_LINES = b"#EXTINF:2,\n/hls/AlHadath/480/0.ts\n" * 2000
LIST_HEAD = b"#EXTM3U\n#EXT-X-TARGETDURATION:2\n"


def send(handler, *headers: tuple[str, str], parts) -> None:
    """Answers with the parts, which need not end, until the program hangs up."""
    handler.close_connection = True
    handler.send_response(200)
    for name, value in headers:
        handler.send_header(name, value)
    handler.end_headers()
    with contextlib.suppress(OSError):
        for part in parts:
            handler.wfile.write(part)


def endless(handler) -> None:
    send(handler, parts=itertools.chain([LIST_HEAD], itertools.repeat(SEGMENT_LINES)))


def deflated(handler) -> None:
    """6 MB of gzip."""
    deflate = zlib.compressobj(9, wbits=31)
    body = deflate.compress(LIST_HEAD) + deflate.flush(zlib.Z_FULL_FLUSH)
    # What follows a full flush is the same bytes for the same text.
    block = deflate.compress(SEGMENT_LINES * 20) + deflate.flush(zlib.Z_FULL_FLUSH)
    send(handler, ("Content-Encoding", "gzip"), parts=[body, *[block] * (6_000_000 // len(block))])


def names_itself(handler) -> None:
    variants = [f"#EXT-X-STREAM-INF:BANDWIDTH=900000\nlist.m3u8?{number}\n" for number in range(1000)]
    handler.answer(200, "application/vnd.apple.mpegurl", ("#EXTM3U\n" + "".join(variants)).encode())


def greedy(answer, later: bool = False):
    """The list comes while another channel plays, or in mid-play."""
    def check(fixture: Fixture) -> str:
        program = fixture.start()
        fixture.plays()
        pid = program.process.pid
        path = "/hls/AlHadath/480/list.m3u8"
        if later:
            fixture.other_channel_plays()
        before, usual = resident_mib(pid), cpu_share(pid, 2)
        began = time.monotonic()
        fixture.site.answers[path] = answer
        if not later:
            fixture.order("next")
        said = fixture.error()
        failed = time.monotonic()
        peak = peak_mib(pid)
        assert peak < before + PEAK, f"{peak:.0f} MiB at the peak, {before:.0f} before"
        fixture.order("previous")
        fixture.plays()
        wait_until(lambda: cpu_share(pid, 1) < usual + 40, f"a core no longer busy, as before with {usual:.0f} %")
        calm = time.monotonic() - failed
        wait_until(lambda: resident_mib(pid) < before + HELD, lambda: f"{resident_mib(pid):.0f} MiB, not {before:.0f}")
        return (f'"{said}" after {failed - began:.0f} s; {before:.0f} MiB before, {peak:.0f} at the peak; memory and core '
                f"free {calm:.0f} s later")
    return check


def huge_picture(handler) -> None:
    """A few hundred KB; each of its twelve frames has 384 MB of pixels."""
    def recipe(folder: str) -> list[list[str]]:
        source = ["-f", "lavfi", "-i", "color=blue:s=16000x16000", "-frames:v", "12"]
        codec = ["-c:v", "libx264", "-preset", "ultrafast", "-tune", "zerolatency", "-threads", "2"]
        return [["mkdir", folder], ["ffmpeg", "-loglevel", "error", "-nostdin", *source, *codec, f"{folder}/x.ts"]]
    handler.answer(200, "video/mp2t", (cached(recipe) / "x.ts").read_bytes())


# Lists that are asked for too often

def no_duration(stands: bool):
    """The list says that it changes after no time at all; `stands`: and does not change either."""
    def check(fixture: Fixture) -> str:
        site = fixture.site
        frozen = time.monotonic()

        def answer(handler) -> None:
            if stands:
                fixture.channel.frozen_at = frozen
            plain = site.live_list(fixture.channel, "480").decode()
            handler.answer(200, "application/vnd.apple.mpegurl", plain.replace("TARGETDURATION:2", "TARGETDURATION:0").encode())

        site.answers[LIST] = answer
        program = fixture.start()
        program.wait_for("playing")
        before, began = site.count(LIST), time.monotonic()
        stays(lambda: program.process.poll() is None, "the program", 20)
        rate = (site.count(LIST) - before) / (time.monotonic() - began)
        assert rate < 12, f"{rate:.0f} lists a second"
        return f"{rate:.1f} lists a second; {program.count('error')} errors"
    return check


# A sound server that accepts and never answers

def start_sound(fixture: Fixture) -> subprocess.Popen:
    server = fixture.desktop.background(PULSE)
    wait_until(lambda: fixture.desktop.run("pactl", "list", "short", "sinks"), "the sound server")
    return server


def is_heard(fixture: Fixture) -> bool:
    return bool(fixture.desktop.run("pactl", "list", "short", "sink-inputs").strip())


def silent_from_the_start(fixture: Fixture) -> str:
    """The channel is switched before the server is found to be silent."""
    server = start_sound(fixture)
    server.send_signal(signal.SIGSTOP)
    program = fixture.start()
    for number in range(6):
        requests = fixture.site.count("/hls/")
        fixture.order("previous" if number % 2 else "next")
        wait_until(lambda requests=requests: fixture.site.count("/hls/") > requests + 2, "the stream of the channel")
    took = fixture.plays()
    assert program.count("error") == 0, program.said("error")
    assert took < 10, f"a picture after {took:.1f} s"
    server.send_signal(signal.SIGCONT)
    wait_until(lambda: is_heard(fixture), "the sound")
    fixture.plays()
    return f"six quick switches, then a picture after {took:.1f} s; the sound comes with the server"


def silent_server(fixture: Fixture) -> str:
    server = start_sound(fixture)
    program = fixture.start()
    fixture.plays()
    wait_until(lambda: is_heard(fixture), "the sound")
    before = threads(program.process.pid)
    server.send_signal(signal.SIGSTOP)
    began = time.monotonic()
    wait_for_standstill(program)
    program.wait_for("playing", 2)
    freeze = time.monotonic() - began
    fixture.plays()
    slowest = 0.0
    for number in range(6):
        fixture.order("previous" if number % 2 else "next")
        slowest = max(slowest, fixture.plays("AlArabiya" if number % 2 else "AlHadath"))
    most = threads(program.process.pid)
    assert program.count("error") == 0, program.said("error")
    assert freeze < 10, f"the picture stood for {freeze:.1f} s"
    assert slowest < 10, f"a switch took {slowest:.1f} s"
    # Up to four former players hang at once, each with three or four threads.
    assert most < before + 18, f"{most} threads, {before} before"
    server.send_signal(signal.SIGCONT)
    wait_until(lambda: is_heard(fixture), "the sound again")
    fixture.plays()
    wait_until(lambda: threads(program.process.pid) < before + 8, "the end of the threads that hung")
    return (f"the picture goes on after {freeze:.1f} s, six switches take {slowest:.1f} s at most, with {most} threads "
            f"({before} before); the sound comes back")


ODD = {"site_class": HostileSite}
ROWS = [
    Row("media.rotated", "the picture is turned by 90, 180 and 270 degrees", rotated(), fixture=ODD),
    Row("media.rotated-opengl", "the same, drawn by OpenGL", rotated(ORVANE_VIDEO_OUTPUT="opengl"), fixture=ODD),
    Row("media.edit-list", "the stream is an edit list that names itself", follows_nothing(edit_list), fixture=ODD),
    Row("media.plain-list", "the stream is a plain list of 3000 addresses", follows_nothing(plain_list), fixture=ODD),
    Row("media.files", "the stream is an MP4 file, then a WebM file", plain_files, fixture=ODD),
    Row("media.silent-sound", "the sound server stops answering, and goes on later", silent_server, fixture=ODD),
    Row("media.silent-sound-start", "the sound server does not answer from the start", silent_from_the_start,
        fixture=ODD),
    Row("media.endless-list", "the list has no end", greedy(endless), fixture=ODD),
    Row("media.endless-list-later", "the list has no end in mid-play", greedy(endless, later=True), fixture=ODD),
    Row("media.deflated-list", "the list is 6 MB of gzip, and 6 GB of text", greedy(deflated), fixture=ODD),
    Row("media.list-of-itself", "the list names itself a thousand times", greedy(names_itself), fixture=ODD),
    Row("media.huge-picture", "the stream is a picture of 16000 x 16000", greedy(huge_picture), fixture=ODD),
    Row("media.no-duration", "a target duration of 0", no_duration(False), fixture=ODD),
    Row("media.no-duration-stands", "a target duration of 0, and the list stands", no_duration(True), fixture=ODD),
    Row("media.leads-here", "a public site's list and redirects name this machine", leads_here, fixture=ODD),
    Row("media.odd-port", "the list is on a closed port with 403 in its number", odd_port, fixture=ODD),
]
