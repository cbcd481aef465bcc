# SPDX-License-Identifier: GPL-3.0-or-later
"""What Linux tells about a process."""

from __future__ import annotations

import os
import pathlib
import time

_TICKS = os.sysconf("SC_CLK_TCK")


def cpu_seconds(pid: int) -> float:
    """What all threads of a process have used so far, without its children."""
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text(encoding="ascii").rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / _TICKS


def _number(path: str, label: str) -> int:
    for line in pathlib.Path(path).read_text(encoding="ascii").splitlines():
        if line.startswith(label):
            return int(line.split()[1])
    raise RuntimeError(f"{path} has no {label}")


def memory_mib(pid: int) -> float:
    """Its share of the memory that it uses (PSS)."""
    return _number(f"/proc/{pid}/smaps_rollup", "Pss:") / 1024


def own_memory_mib(pid: int) -> float:
    """What it has of its own, whoever else uses the same libraries."""
    return _number(f"/proc/{pid}/smaps_rollup", "Pss_Anon:") / 1024


def threads(pid: int) -> int:
    return _number(f"/proc/{pid}/status", "Threads:")


def wake_ups(pid: int) -> dict[str, int]:
    """How often each of its threads has waited so far, every time of which ended with being woken."""
    return {task.name: _number(str(task / "status"), "voluntary_ctxt_switches:")
            for task in pathlib.Path(f"/proc/{pid}/task").iterdir()}


def cpu_share(pid: int, seconds: float) -> float:
    """Percent of one core, over a time that begins now."""
    started, before = time.monotonic(), cpu_seconds(pid)
    time.sleep(seconds)
    return 100 * (cpu_seconds(pid) - before) / (time.monotonic() - started)
