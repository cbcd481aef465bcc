# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures Orvane beside mpv on a live site of this machine, and prints one table."""

from __future__ import annotations

import argparse
import dataclasses
import json
import os
import pathlib
import platform
import statistics
import subprocess
import sys
import tempfile
import time

import measures
import rewinding
import zapping
from measures import RUNS, Bench, Row
from players import Testbed

MEASURES = measures.MEASURES | zapping.MEASURES | rewinding.MEASURES
# Takes twenty minutes, so it is measured only when it is named.
BY_NAME = {"hours"}


def _first_line(*command: str) -> str:
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()[0]


def versions(build: pathlib.Path) -> dict[str, str]:
    return {
        "Orvane": _first_line(str(build / "orvane"), "--version").split()[1],
        "commit": _first_line("git", "describe", "--always", "--dirty"),
        "mpv": _first_line("mpv", "--version").split()[1],
        "yt-dlp": _first_line("yt-dlp", "--version"),
        "system": platform.freedesktop_os_release()["PRETTY_NAME"],
        "cores": str(os.cpu_count()),
    }


def _number(value: float) -> str:
    return f"{value:.2f}" if abs(value) < 10 else f"{value:.0f}"


def _samples(values: list[float]) -> str:
    """Returns the median with the range around it."""
    if not values:
        return ""
    if len(values) == 1:
        return _number(values[0])
    return f"{_number(statistics.median(values))} ({_number(min(values))} … {_number(max(values))})"


def _line(row: Row) -> list[str]:
    unit = f" {row.unit}" if row.unit and not row.mpv else ""
    is_series = row.measure.startswith("growth")
    orvane = " / ".join(map(_number, row.orvane)) if is_series else _samples(row.orvane)
    return [row.measure, orvane, _samples(row.mpv), row.unit,
            _number(row.figure) + (" ×" if row.mpv or is_series else unit),
            _number(row.goal) + (" ×" if row.mpv or is_series else unit),
            "yes" if row.is_met else "NO", row.note]


def table(rows: list[Row]) -> str:
    head = ["Measure", "Orvane", "mpv", "Unit", "Figure", "At most", "Met", "Note"]
    cells = [head, *map(_line, rows)]
    widths = [max(len(line[i]) for line in cells) for i in range(len(head))]
    rule = ["-" * width for width in widths]
    return "\n".join("| " + " | ".join(c.ljust(w) for c, w in zip(line, widths)) + " |"
                     for line in [cells[0], rule, *cells[1:]])


def measure(names: list[str], build: pathlib.Path) -> tuple[list[Row], list[str]]:
    """Returns the rows, and the errors of what could not be measured."""
    rows, faults = [], []
    started = time.monotonic()
    print("bench: preparing the live site (the first time this encodes for a minute)", file=sys.stderr)
    for name in names:
        def say(what: str, name=name) -> None:
            print(f"bench: {time.monotonic() - started:4.0f} s  {name}: {what}", file=sys.stderr, flush=True)

        # A testbed for each measure, so that one does not affect the next.
        with tempfile.TemporaryDirectory() as folder, Testbed(pathlib.Path(folder), build / "orvane") as testbed:
            try:
                rows += MEASURES[name](Bench(testbed, build, say))
            except (AssertionError, RuntimeError, OSError, subprocess.SubprocessError) as problem:
                faults.append(f"{name}: {problem}")
                say(f"failed: {problem}")
    return rows, faults


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/bench", description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--json", action="store_true", help="print every sample as JSON instead of the table")
    parser.add_argument("--only", nargs="+", choices=list(MEASURES), metavar="NAME",
                        default=[name for name in MEASURES if name not in BY_NAME],
                        help=f"measure only these: {', '.join(MEASURES)}")
    options = parser.parse_args()
    about = versions(options.build)
    rows, faults = measure(options.only, options.build)
    if options.json:
        lines = [dataclasses.asdict(row) | {"met": row.is_met} for row in rows]
        print(json.dumps({"versions": about, "runs": RUNS, "rows": lines, "faults": faults}, indent=2))
    else:
        print(", ".join(f"{name} {value}" for name, value in about.items()))
        print(table(rows))
    for fault in faults:
        print(f"bench: not measured: {fault}", file=sys.stderr)
    # A missed goal is a result, not a failure.
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
