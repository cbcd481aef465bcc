# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults of yt-dlp. A script replaces it in the folder that is searched before that of the real one; only the
program sees the script."""

import os
import pathlib
import random
import time

from fixture import Fixture
from outcome import is_installation
from pip_index import PipIndex
from rows import Row
from tools.processes import descendants, is_alive
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


def fails_with(text: str):
    """A tool that runs prints the text as an error: the overlay shows it, and Retry plays after the repair."""
    def check(fixture: Fixture) -> str:
        tool = Tool(fixture)
        tool.install(f'[ "$1" != --version ] || exec {REAL} --version\necho {text} >&2')
        tool.start()
        return fixture.error_then_retry(f"Stream resolve failed: {text}", repair=tool.repair)
    return check


def not_live(fixture: Fixture) -> str:
    """A channel that is not live is looked for every five minutes."""
    tool = Tool(fixture)
    tool.install(f'[ "$1" != --version ] || exec {REAL} --version\n'
                 'echo "ERROR: [x:tab] @x: The channel is not currently live" >&2; exit 1')
    tool.start()
    return fixture.heals_after(20, 330, repair=tool.repair)


def skipped(break_tool):
    """A file that cannot be run, or that does not run, is skipped in favour of the one in the next folder."""
    def check(fixture: Fixture) -> str:
        tool = Tool(fixture)
        break_tool(tool)
        # The start also has it replaced, in the background.
        tool.start("mount --bind /dev/null /usr/bin/pip3\n")
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
    return fixture.error_then_retry("The stream has no web address", repair=tool.repair)


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


def upgraded(fixture: Fixture) -> str:
    """Quits during upgrades by pip: each goes on and leaves a tool that runs. ORVANE_QUITS sets the number."""
    home = pathlib.Path(fixture.desktop.environment["HOME"])
    seed = random.SystemRandom().randrange(10_000)
    chance = random.Random(seed)
    index = fixture.enter(PipIndex())
    pip = {"PIP_INDEX_URL": index.origin, "PIP_NO_INDEX": "", "ORVANE_GITHUB_API": index.origin}
    fixture.desktop.run("env", f"PIP_INDEX_URL={index.origin}", "/usr/bin/pip3", "install", "--user", "--upgrade",
                        "--break-system-packages", "yt-dlp")
    quits = int(os.environ.get("ORVANE_QUITS", "2"))
    cut, seen = 0, []
    for release in range(2, quits + 2):
        version = index.publish(release)
        program = fixture.start(**pip)

        def upgrades() -> list[int]:
            return [pid for pid, command in descendants(program.process.pid) if is_installation(command)]

        pid = wait_until(upgrades, "pip")[0]
        # The first is early enough for any machine.
        moment = chance.uniform(0.1, 3) if seen else 0.1
        time.sleep(moment)
        assert program.quit() == 0, program.log()
        cut += is_alive(pid)
        wait_until(lambda: not is_alive(pid), "the end of pip")
        runs = fixture.desktop.run(str(home / ".local/bin/yt-dlp"), "--version").strip()
        assert runs == version, f"seed {seed}: {runs!r} after a quit at {moment:.1f} s, not {version}"
        seen.append(f"{moment:.1f}")
    assert cut, "no upgrade was running when the program quit"
    return f"seed {seed}; {cut} of {quits} upgrades went on; the tool runs after quits at {' '.join(seen)} s"


def printed(text: str) -> str:
    return f"printf '{text}\\n'"


ROWS = [
    Row("tool.missing", "yt-dlp is missing and cannot be installed", missing),
    Row("tool.not-executable", "yt-dlp is not executable",
        skipped(lambda tool: tool.install("exit 1", 0o644))),
    Row("tool.folder", "yt-dlp is a folder", skipped(lambda tool: tool.path.mkdir())),
    Row("tool.no-interpreter", "yt-dlp's interpreter does not exist",
        skipped(lambda tool: tool.install("", interpreter="/nowhere/sh"))),
    Row("tool.crashes", "yt-dlp crashes", skipped(lambda tool: tool.install("kill -SEGV $$"))),
    Row("tool.hangs", "yt-dlp hangs", hangs),
    Row("tool.100-MB", "yt-dlp prints 100 MB", prints_without_end),
    Row("tool.file", "yt-dlp prints the address of a file", prints_a_file),
    Row("tool.complains", "yt-dlp prints to the standard error only",
        fails_with("ERROR: the moon is full")),
    Row("tool.arabic", "yt-dlp prints an error in Arabic",
        fails_with("خطأ: القناة غير متاحة")),
    Row("tool.not-live", "the channel is not live for 20 s", not_live),
    Row("tool.upgraded", "the program quits while pip upgrades yt-dlp", upgraded, quits=False),
    Row("tool.replaced", "yt-dlp is replaced while it runs", replaced),
]
