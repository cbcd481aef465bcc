# SPDX-License-Identifier: GPL-3.0-or-later
"""A machine in trouble: services that hang, streams that are gone, limits, and files that are none."""

import contextlib
import json
import os
import pathlib
import resource
import signal
import socket
import threading

import dbus
import dbus.bus
import dbus.lowlevel

from fixture import UNKNOWN_KEY, Fixture
from outcome import BUILD, quit_cleanly
from rows import Row
from tool_rows import OTHERS, REAL, Tool
from tools.images import background
from tools.processes import cpu_share, descendants, is_alive
from tools.tray import find_icon, start_tint2
from tools.waiting import DEADLINE, wait_until

PLAYER = ("org.mpris.MediaPlayer2.orvane", "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Player")
COMMANDS = 3000
# How many of its files the program opens at its start and keeps open.
STANDING_FILES = 16
# Nobody else's, so that only its threads count.
USER = 54321
# A busy machine may take a pause between two of them for the end.
MOST_CHILDREN = 30
# Kilobytes; a start with the sanitizers takes half of it.
MOST_MEMORY = 1_500_000


def peak_memory(fixture: Fixture) -> int:
    """In kilobytes."""
    status = pathlib.Path(f"/proc/{fixture.program.process.pid}/status").read_text(encoding="ascii")
    return int(status.partition("VmHWM:")[2].split()[0])


class SilentBus:
    """Accepts all connections and never answers. Use as a context manager."""

    def __init__(self, path: pathlib.Path):
        self.address = f"unix:path={path}"
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(str(path))
        self._listener.listen()
        self._peers: list[socket.socket] = []

    def __enter__(self) -> "SilentBus":
        threading.Thread(target=self._accept, daemon=True).start()
        return self

    def __exit__(self, *_) -> None:
        self._listener.shutdown(socket.SHUT_RDWR)
        for peer in [self._listener, *self._peers]:
            peer.close()

    def _accept(self) -> None:
        with contextlib.suppress(OSError):
            while True:
                self._peers.append(self._listener.accept()[0])

    def has_been_asked(self) -> bool:
        return bool(self._peers)


def silent_bus(fixture: Fixture) -> str:
    bus = fixture.enter(SilentBus(fixture.folder / "silent"))
    start_tint2(fixture.desktop)
    program = fixture.start(DBUS_SESSION_BUS_ADDRESS=bus.address)
    took = program.wait_for("window-shown") / 1000
    fixture.plays()
    assert bus.has_been_asked()
    wait_until(lambda: find_icon(fixture.desktop), "the icon")
    return f"the window after {took:.1f} s; plays, has its icon in a tray of X11, and quits"


# The preferences

def no_file(make):
    """Something in the place of the preferences file that is no regular file is not read and left as it is."""
    def check(fixture: Fixture) -> str:
        fixture.preferences.unlink()
        make(fixture.preferences)
        before = fixture.preferences.lstat()
        program = fixture.start()
        took = fixture.plays()
        fixture.order("volume", "0.25")
        assert fixture.ask("volume") == "0.250000"
        memory = peak_memory(fixture)
        assert memory < MOST_MEMORY, f"{memory} kB"
        quit_cleanly(program)
        assert fixture.preferences.lstat().st_ino == before.st_ino, "it was replaced"
        assert "preferences.json" in program.log(), program.log()
        return f"plays after {took:.0f} s with at most {memory // 1000} MB; prints a message; it is left as it is"
    return check


def too_large(preferences: pathlib.Path) -> None:
    with preferences.open("wb") as file:
        file.truncate(3 << 30)


def wild_values(fixture: Fixture) -> str:
    fixture.preferences.write_text(json.dumps(UNKNOWN_KEY | {"volume": 1e308, "windowOpacity": 0}), encoding="ascii")
    program = fixture.start()
    fixture.order("volume")
    assert fixture.ask("volume") == "1.000000", fixture.ask("volume")
    opacity = int(fixture.desktop.run("xprop", "-id", program.window(), "_NET_WM_WINDOW_OPACITY").split()[-1])
    assert opacity > 0.09 * 0xFFFFFFFF, opacity
    fixture.plays()
    return f"the volume is 1, the opacity {opacity / 0xFFFFFFFF:.1f}"


# Windows

def large_frame(fixture: Fixture) -> str:
    seen = []
    for size in ((30000, 20000), (1600, 900)):
        stored = UNKNOWN_KEY | {"windowFrame": f"{{{{0, 0}}, {{{size[0]}, {size[1]}}}}}"}
        fixture.preferences.write_text(json.dumps(stored), encoding="ascii")
        program = fixture.start()
        program.wait_for("window-shown")
        x, y, width, height = program.frame()
        assert x >= 0 and y >= 0 and x + width <= 1280 and y + height <= 720, f"at {program.frame()}"
        assert abs(width * 9 - height * 16) <= 16, f"{width} x {height} is not 16:9"
        fixture.plays()
        seen.append(f"{size[0]} x {size[1]} as {width} x {height}")
        quit_cleanly(program)
    return f"shows and plays {', '.join(seen)}"


# Standard streams and signals

def plays_and_quits(fixture: Fixture, commands: str, seen: str) -> str:
    """`commands` of the shell prepare the process that becomes the program."""
    fixture.start("--verbose", mounts=commands)
    took = fixture.plays()
    fixture.order("next")
    fixture.plays("AlHadath")
    quit_cleanly(fixture.program)
    return f"plays after {took:.0f} s, the next channel too, and quits; {seen}"


def gone_reader(fixture: Fixture) -> str:
    pipe = fixture.folder / "pipe"
    return plays_and_quits(fixture, f"mkfifo {pipe}\nexec 3<>{pipe} 1>{pipe} 2>&1 3<&-", "its messages are lost")


def closed_streams(fixture: Fixture) -> str:
    return plays_and_quits(fixture, "exec 0<&- 1>&- 2>&-", "its messages are lost")


def size_limit(fixture: Fixture) -> str:
    fixture.preferences.write_text(json.dumps(UNKNOWN_KEY | {"filler": "x" * 20_000}), encoding="ascii")
    return plays_and_quits(fixture, "ulimit -f 16", "the preferences stay as they are")


# Children

def left_by(fixture: Fixture) -> list[int]:
    """Starts a yt-dlp that leaves processes in a group and a session of their own; returns all of them."""
    commands = [f"sleep 8640{n}" for n in range(4)]
    tool = Tool(fixture)
    tool.install(f"setsid {commands[0]} &\nsetsid sh -c \"{commands[1]} & {commands[2]}\" &\nexec {commands[3]}")
    program = tool.start()

    def started() -> list[int]:
        found = [(pid, command) for pid, command in descendants(program.process.pid) if command in commands]
        return [pid for pid, _ in found] if {command for _, command in found} == set(commands) else []

    return wait_until(started, "the processes of yt-dlp")


def all_end(pids: list[int]) -> None:
    wait_until(lambda: not any(is_alive(pid) for pid in pids), "the end of all children")


def killed(fixture: Fixture) -> str:
    pids = left_by(fixture)
    fixture.program.process.kill()
    all_end(pids)
    return f"its {len(pids)} children and grandchildren end with it"


def x_server_ends(fixture: Fixture) -> str:
    pids = left_by(fixture)
    os.kill(fixture.desktop.x_server, signal.SIGKILL)
    fixture.program.wait_for_end()
    all_end(pids)
    return f"it ends, and its {len(pids)} children and grandchildren with it"


def foreign_module(fixture: Fixture) -> str:
    """yt-dlp is there as a module only."""
    folder = fixture.folder / "started-in"
    folder.mkdir()
    mark = fixture.folder / "mark"
    for module in ("yt_dlp", "pip"):
        (folder / f"{module}.py").write_text(f"open({str(mark)!r}, 'w')\n", encoding="ascii")
    hide = "".join(f"[ ! -e {other} ] || mount --bind /dev/null {other}\n" for other in OTHERS)
    fixture.start(mounts=f"{hide}cd {folder}", PATH="/usr/bin:/bin")
    took = fixture.plays()
    assert not mark.exists(), "a module of that folder was run"
    return f"the real yt-dlp plays after {took:.0f} s"


def many_commands(fixture: Fixture) -> str:
    calls = fixture.folder / "calls"
    tool = Tool(fixture)
    tool.install(f"echo >> {calls}; exec {REAL} \"$@\"")
    program = tool.start()
    fixture.plays()
    wait_until(lambda: fixture.ask("status"), "the program on the bus")
    before = calls.stat().st_size
    loadings, pictures = program.count("loading"), program.count("playing")
    connection = dbus.bus.BusConnection(fixture.desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
    for i in range(COMMANDS):
        command = dbus.lowlevel.MethodCallMessage(*PLAYER, method="Previous" if i % 2 else "Next")
        # The bus limits the number of answers that are awaited.
        command.set_no_reply(True)
        connection.send_message(command)
    connection.flush()
    connection.close()
    wait_until(lambda: program.count("loading") >= loadings + COMMANDS,
               lambda: f"the end of the commands; {calls.stat().st_size - before} times yt-dlp")
    wait_until(lambda: program.count("playing") > pictures,
               lambda: f"a picture; {calls.stat().st_size - before} times yt-dlp")
    fixture.plays()
    children = calls.stat().st_size - before
    assert children <= MOST_CHILDREN, f"{children} times yt-dlp"
    return f"{children} times yt-dlp for {COMMANDS} commands, then plays"


# yt-dlp's own configuration

def configure(fixture: Fixture, *options: str) -> pathlib.Path:
    path = pathlib.Path(fixture.desktop.environment["XDG_CONFIG_HOME"]) / "yt-dlp/config"
    path.parent.mkdir()
    path.write_text("\n".join(options), encoding="ascii")
    return path


def told_of(path: pathlib.Path, fixture: Fixture, repair) -> str:
    program = fixture.program
    program.wait_for("error", deadline=180)
    took = program.milestones()[-1][1] / 1000
    seen = fixture.error_then_retry(f"yt-dlp's own configuration gets in the way: {path}", repair=repair)
    return f"after {took:.0f} s {seen}"


def prints_more(*options: str):
    def check(fixture: Fixture) -> str:
        path = configure(fixture, *options)
        fixture.start()
        return told_of(path, fixture, repair=path.unlink)
    return check


def downloads(fixture: Fixture) -> str:
    """The address comes first, then a download without end."""
    path = configure(fixture, "--no-simulate", "-o stream")
    tool = Tool(fixture)
    tool.install(f"{REAL} \"$@\"; exec sleep 86400")
    tool.start()

    def repair() -> None:
        path.unlink()
        tool.repair()

    return told_of(path, fixture, repair)


# Secrets

def kept_private(fixture: Fixture) -> str:
    fixture.preferences.unlink()
    fixture.preferences.parent.rmdir()
    seen_by_tool = fixture.folder / "mask"
    tool = Tool(fixture)
    tool.install(f"umask > {seen_by_tool}; exec {REAL} \"$@\"")
    program = tool.start("umask 022; ulimit -c unlimited\n")
    fixture.plays()
    fixture.order("volume", "0.25")
    program.wait_for_preferences(volume=0.25)
    for path, wanted in ((fixture.preferences.parent, 0o700), (fixture.preferences, 0o600)):
        assert path.stat().st_mode & 0o777 == wanted, f"{path}: {path.stat().st_mode:o}"
    assert resource.prlimit(program.process.pid, resource.RLIMIT_CORE)[0] == 0
    assert seen_by_tool.read_text(encoding="ascii").strip() == "0022", "yt-dlp does not have the user's own mask"
    return "the preferences are for the user alone, a crash would leave no image of the memory"


# Limits

def refuses(binary: str, *words: str):
    """A start under a limit says what is missing, and ends."""
    def check(fixture: Fixture) -> str:
        program = fixture.run(launcher(fixture, binary))
        code = program.wait_for_end()
        said = program.log().strip()
        assert code == 1, f"exit code {code}: {said}"
        for word in words:
            assert word in said, said
        return f'prints "{said}" and ends'
    return check


def launcher(fixture: Fixture, prefix: str) -> str:
    path = fixture.folder / "limited"
    path.write_text(f"#!/bin/sh\n{prefix} {BUILD}/orvane \"$@\"\n", encoding="ascii")
    path.chmod(0o755)
    return str(path)


def as_another_user(limit: str) -> str:
    """The number of the superuser's threads has no limit."""
    return f"exec {limit} setpriv --reuid={USER} --regid={USER} --clear-groups" if os.getuid() == 0 else f"exec {limit}"


def no_files_left(fixture: Fixture) -> str:
    program = fixture.start()
    fixture.plays()
    if b"__ubsan_handle" in pathlib.Path(f"{BUILD}/orvane").read_bytes():
        return "not tried with the sanitizers, which open a pipe to look at the type of an object"
    pid = program.process.pid
    usual = cpu_share(pid, 5)
    before = resource.prlimit(pid, resource.RLIMIT_NOFILE)
    # The connections of the stream, which come and go, have higher numbers.
    resource.prlimit(pid, resource.RLIMIT_NOFILE, (STANDING_FILES, before[1]))
    starter = fixture.desktop.background([program.process.args[0], "--next"])
    load = cpu_share(pid, 5)
    assert program.is_running() and starter.poll() is None, "it got an answer"
    fixture.ask("next")
    # Its timeline is a file, too.
    wait_until(lambda: max(background(program.picture())) < 64, "the overlay")
    assert program.is_running(), "it has ended"
    resource.prlimit(pid, resource.RLIMIT_NOFILE, before)
    assert starter.wait(DEADLINE) == 0, "another start got no answer"
    assert load < usual + 40, f"{load:.0f} per cent of a processor, not {usual:.0f}"
    return f"{load:.0f} % of a processor; another start waits, another channel is asked for; then the next plays" \
        f" after {fixture.plays('aljazeera'):.0f} s"


ROWS = [
    Row("machine.silent-bus", "a session bus that accepts and never answers", silent_bus),
    Row("machine.pipe", "a pipe in place of the preferences file", no_file(os.mkfifo), quits=False,
        keeps_settings=False),
    Row("machine.device", "a link to /dev/zero in its place", no_file(lambda path: path.symlink_to("/dev/zero")),
        quits=False, keeps_settings=False),
    Row("machine.3-GB", "a preferences file of 3 GB", no_file(too_large), quits=False, keeps_settings=False),
    Row("machine.wild-values", "a volume of 1e308, an opacity of 0", wild_values),
    Row("machine.gone-reader", "the reader of the standard error has gone", gone_reader, quits=False),
    Row("machine.closed-streams", "the three standard streams are closed at the start", closed_streams, quits=False),
    Row("machine.size-limit", "files may not grow beyond 8 kB", size_limit, quits=False),
    Row("machine.killed", "the program is killed while yt-dlp has children in sessions of their own", killed,
        quits=False),
    Row("machine.x-server", "the X server ends meanwhile", x_server_ends, quits=False),
    Row("machine.foreign-module", "a yt_dlp.py and a pip.py in the folder that it is started in", foreign_module),
    Row("machine.commands", f"{COMMANDS} commands from a panel at once", many_commands),
    Row("machine.configuration-json", "yt-dlp's own configuration has it print JSON", prints_more("-J")),
    Row("machine.configuration-print", "the same, and print the title", prints_more("--print title")),
    Row("machine.configuration-download", "the same, and download the stream", downloads),
    Row("machine.private", "new files are readable for all, and crashes leave images of memory", kept_private,
        keeps_settings=False),
    Row("machine.few-files", "only 16 files may be open", refuses("ulimit -n 16; exec", "16 files", "64"), quits=False),
    Row("machine.few-threads", "only 9 threads are allowed",
        refuses(as_another_user("prlimit --nproc=9"), "threads", "24"), quits=False),
    Row("machine.no-files", "no file may be opened any more", no_files_left),
    Row("machine.large-frame", "a saved frame larger than the screen", large_frame, quits=False),
]
