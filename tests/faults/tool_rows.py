# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults of yt-dlp. A script replaces it in the folder that is searched before that of the real one; only the
program sees the script."""

import pathlib

from fixture import Fixture
from rows import Row
from tools.processes import descendants
from tools.waiting import wait_until

FOLDER = "/usr/local/bin"
REAL = "/usr/bin/yt-dlp"
PACKAGE = "/usr/lib/python3/dist-packages/yt_dlp"
OTHERS = (REAL, "/usr/bin/pip3")
# Kilobytes: far less than the 100 MB that the tool prints; includes the overlay's memory.
MEMORY_FOR_OUTPUT = 30_000


class Tool:
    """The script; it can be replaced at any time."""

    def __init__(self, fixture: Fixture):
        self._fixture = fixture
        self._folder = fixture.folder / "bin"
        self._folder.mkdir()
        self.path = self._folder / "yt-dlp"

    def install(self, script: str, mode: int = 0o755, interpreter: str = "/bin/sh") -> None:
        new = self._folder / "new"
        new.write_text(f"#!{interpreter}\n{script}\n", encoding="utf-8")
        new.chmod(mode)
        new.rename(self.path)

    def repair(self) -> None:
        self.install(f'exec {REAL} "$@"')

    def start(self, more_mounts: str = "", **variables: str):
        return self._fixture.start(mounts=f"mount --bind {self._folder} {FOLDER}\n{more_mounts}", **variables)


def memory(pid: int) -> int:
    """Returns the peak of the program's memory, in kilobytes."""
    status = pathlib.Path(f"/proc/{pid}/status").read_text(encoding="ascii")
    return int(status.partition("VmHWM:")[2].split()[0])


def fails_with(script: str, text: str = "", interpreter: str = "/bin/sh"):
    """The overlay shows the error, with the text if yt-dlp prints one; after the repair, Retry plays."""
    def check(fixture: Fixture) -> str:
        tool = Tool(fixture)
        tool.install(script, interpreter=interpreter)
        tool.start()
        return fixture.error_then_retry(f"Stream resolve failed: {text}".strip(), repair=tool.repair)
    return check


def skipped(break_tool):
    """A file that cannot be run is skipped in favour of the one in the next folder."""
    def check(fixture: Fixture) -> str:
        tool = Tool(fixture)
        break_tool(tool)
        tool.start()
        return f"the one in the next folder plays after {fixture.plays():.0f} s"
    return check


def missing(fixture: Fixture) -> str:
    empty = fixture.folder / "empty"
    empty.mkdir()
    tool = Tool(fixture)
    hide = "".join(f"[ ! -e {other} ] || mount --bind /dev/null {other}\n" for other in OTHERS)
    # The repaired tool runs this module.
    kept = fixture.folder / "kept"
    kept.mkdir()
    tool.start(f"mount --bind {PACKAGE} {kept}\nmount --bind {empty} {PACKAGE}\n{hide}", PATH="/usr/bin:/bin")

    def repair():
        package = fixture.folder / "package"
        package.mkdir()
        (package / "yt_dlp").symlink_to(kept)
        tool.install(f'PYTHONPATH={package} exec /usr/bin/python3 -m yt_dlp "$@"')

    return fixture.error_then_retry("yt-dlp not found", repair=repair)


def hangs(fixture: Fixture) -> str:
    tool = Tool(fixture)
    tool.install(f'case "$*" in *AlArabiya*|*n7eQejkXbnM*) exec sleep 86400;; *) exec {REAL} "$@";; esac')
    program = tool.start()

    def hanging() -> bool:
        return any("sleep 86400" in command for _, command in descendants(program.process.pid))

    wait_until(hanging, "a hanging yt-dlp")
    seen = fixture.other_channel_plays()
    wait_until(lambda: not hanging(), "the end of the hanging yt-dlp")
    fixture.order("previous")
    wait_until(hanging, "another hanging yt-dlp")
    return f"{seen}; then quits while yt-dlp hangs"


def prints_without_end(fixture: Fixture) -> str:
    tool = Tool(fixture)
    tool.install("echo Hello; exec sleep 86400")
    # The sanitizer keeps what was freed.
    program = tool.start(ASAN_OPTIONS="quarantine_size_mb=1")
    wait_until(program.children, "yt-dlp")
    before = memory(program.process.pid)
    fixture.order("stop")
    tool.install("head -c 100000000 /dev/zero | tr '\\0' a")
    fixture.order("play")
    program.wait_for("error")
    more = memory(program.process.pid) - before
    # Each call may keep the beginning of the output.
    assert more < MEMORY_FOR_OUTPUT, f"{more} kB more"
    return fixture.error_then_retry("Stream resolve failed:", repair=tool.repair)


def prints_a_file(fixture: Fixture) -> str:
    tool = Tool(fixture)
    tool.install(printed("file:///etc/passwd"))
    tool.start()
    return fixture.error_then_retry("Not a web address: file:///etc/passwd", repair=tool.repair)


def replaced(fixture: Fixture) -> str:
    tool = Tool(fixture)
    gate = fixture.folder / "gate"
    tool.install(f'while [ ! -e {gate} ]; do sleep 0.1; done; exec {REAL} "$@"')
    program = tool.start()
    wait_until(lambda: any("yt-dlp" in child for child in program.children()), "yt-dlp")
    tool.install("echo another one >&2; exit 1")
    gate.touch()
    seen = f"the running one resolves, plays after {fixture.plays():.0f} s"
    tool.repair()
    return f"{seen}; {fixture.other_channel_plays()}"


def printed(text: str) -> str:
    return f"printf '{text}\\n'"


ROWS = [
    Row("tool.missing", "yt-dlp is missing and cannot be installed", missing),
    Row("tool.not-executable", "yt-dlp is not executable",
        skipped(lambda tool: tool.install("exit 1", 0o644))),
    Row("tool.folder", "yt-dlp is a folder", skipped(lambda tool: tool.path.mkdir())),
    Row("tool.no-interpreter", "yt-dlp's interpreter does not exist",
        fails_with("", "Failed to run yt-dlp", interpreter="/nowhere/sh")),
    Row("tool.crashes", "yt-dlp crashes", fails_with("kill -SEGV $$")),
    Row("tool.hangs", "yt-dlp hangs", hangs),
    Row("tool.100-MB", "yt-dlp prints 100 MB", prints_without_end),
    Row("tool.file", "yt-dlp prints the address of a file", prints_a_file),
    Row("tool.complains", "yt-dlp prints to the standard error only",
        fails_with("echo ERROR: the moon is full >&2", "ERROR: the moon is full")),
    Row("tool.arabic", "yt-dlp prints an error in Arabic",
        fails_with("echo خطأ: القناة غير متاحة >&2", "خطأ: القناة غير متاحة")),
    Row("tool.replaced", "yt-dlp is replaced while it runs", replaced),
]
