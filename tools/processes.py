# SPDX-License-Identifier: GPL-3.0-or-later
"""What Linux knows about a process: its children, times and memory."""

from __future__ import annotations

import contextlib
import os
import pathlib
import subprocess
import time

from tools.waiting import wait_until

_TICKS = os.sysconf("SC_CLK_TCK")


def cpu_seconds(pid: int) -> float:
    """Returns the CPU time of all its threads so far, without its children."""
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text(encoding="ascii").rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / _TICKS


def _number(path: str, label: str) -> int:
    for line in pathlib.Path(path).read_text(encoding="ascii").splitlines():
        if line.startswith(label):
            return int(line.split()[1])
    raise RuntimeError(f"{path} has no {label}")


def memory_mib(pid: int) -> float:
    """Returns its proportional share of memory (PSS)."""
    return _number(f"/proc/{pid}/smaps_rollup", "Pss:") / 1024


def own_memory_mib(pid: int) -> float:
    """Returns its anonymous memory, without the libraries that it shares."""
    return _number(f"/proc/{pid}/smaps_rollup", "Pss_Anon:") / 1024


def resident_mib(pid: int) -> float:
    """Returns the memory that it has in use, shared or not."""
    return _number(f"/proc/{pid}/status", "VmRSS:") / 1024


def peak_mib(pid: int) -> float:
    """Returns the most of that it has had so far."""
    return _number(f"/proc/{pid}/status", "VmHWM:") / 1024


def buffer_mib(pid: int) -> float:
    """Returns what the files occupy on the disk in which the program keeps the last minutes of a channel."""
    sizes = {}
    for link in pathlib.Path(f"/proc/{pid}/fd").iterdir():
        with contextlib.suppress(FileNotFoundError):
            if "/orvane/live-" in os.readlink(link):
                status = link.stat()
                sizes[status.st_ino] = status.st_blocks * 512
    return sum(sizes.values()) / 2**20


def threads(pid: int) -> int:
    return _number(f"/proc/{pid}/status", "Threads:")


def wake_ups(pid: int) -> dict[str, int]:
    """Returns how often each of its threads has been woken so far."""
    return {task.name: _number(str(task / "status"), "voluntary_ctxt_switches:")
            for task in pathlib.Path(f"/proc/{pid}/task").iterdir()}


def cpu_share(pid: int, seconds: float) -> float:
    """Measures for the given time from now; returns percent of one core."""
    started, before = time.monotonic(), cpu_seconds(pid)
    time.sleep(seconds)
    return 100 * (cpu_seconds(pid) - before) / (time.monotonic() - started)


def descendants(pid: int) -> list[tuple[int, str]]:
    """Returns process id and command line of each living process that `pid` has started, directly or not."""
    table = subprocess.run(
        ["ps", "-e", "-o", "pid=,ppid=,args="], check=True, capture_output=True, text=True
    ).stdout
    rows = [line.split(None, 2) for line in table.splitlines()]
    found: list[tuple[int, str]] = []
    parents = {pid}
    while parents:
        level = [(int(r[0]), r[2]) for r in rows if int(r[1]) in parents and len(r) == 3]
        found += level
        parents = {child for child, _ in level}
    return found


def is_alive(pid: int) -> bool:
    return pathlib.Path(f"/proc/{pid}").exists()


def wait_for_ends(children: list[tuple[int, str]], limit: float) -> None:
    """Waits for the end of what `descendants` has returned before a program ended: what is cut off by that ends just
    after it."""
    for pid, command in children:
        wait_until(lambda p=pid: not is_alive(p), f"the end of the child process {pid}: {command}", limit)


def end(process: subprocess.Popen) -> None:
    """Terminates the process, kills it if it does not end soon, and waits for it."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
    for stream in (process.stdin, process.stdout):
        if stream:
            stream.close()
