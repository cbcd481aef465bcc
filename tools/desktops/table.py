# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks the built program on many desktops and prints a table: desktops and checks, "ok", "-" where there is nothing
to check, "missing" where packages are, or a number and below it the words that say what was seen."""

from __future__ import annotations

import argparse
import concurrent.futures
import os
import pathlib
import shlex
import subprocess
import sys
import time
from typing import Callable

from tools.desktops import ghost_checks, program_checks, typist, window_checks
from tools.desktops.catalogue import DESKTOPS, TOOLS
from tools.desktops.session import NoProtocol, Session
from tools.desktops.stand import NOTHING, OK, Stand

MISSING = "missing"

CHECKS: dict[str, Callable[[Stand], str]] = {
    "typist": typist.typist,
    "place": window_checks.place,
    "panel": window_checks.panel,
    "late-panel": window_checks.late_panel,
    "above": window_checks.above,
    "over-full": window_checks.over_full,
    "workspaces": window_checks.workspaces,
    "task-bar": window_checks.task_bar,
    "drag": window_checks.drag,
    "resize": window_checks.resize,
    "full": window_checks.full_screen,
    "frame": window_checks.frame,
    "ghost": ghost_checks.ghost,
    "ghost-wayland": ghost_checks.ghost_wayland,
    "dialogs": program_checks.dialogs,
    "tray": program_checks.tray,
    "lock": window_checks.lock,
    "quit": program_checks.quits,
    "monitors": window_checks.monitors,
}

SCREEN = "1280x720"
# Those that need another screen.
SCREENS = {"monitors": "2560x1440"}

Row = dict[str, str]


class Runner:
    """Runs checks on one desktop, which is started anew after a check that has failed."""

    def __init__(self, kind: type[Session], times: int, results: pathlib.Path | None):
        self._kind = kind
        self._times = times
        self._results = results
        self._desktop: Session | None = None
        self._screen = ""

    def row(self, checks: list[str]) -> Row:
        try:
            return {check: self._cell(check) for check in checks}
        finally:
            self._stop()

    def _cell(self, check: str) -> str:
        seen = [self._once(check) for _ in range(self._times)]
        bad = [words for words in seen if words not in (OK, NOTHING)]
        if not bad:
            return seen[0]
        return bad[0] if self._times == 1 else f"{len(bad)} of {self._times}: {bad[0]}"

    def _once(self, check: str) -> str:
        began = time.monotonic()
        seen = self._attempt(check)
        print(f"desktops: {self._kind.name} {check}: {seen} ({time.monotonic() - began:.1f} s)", file=sys.stderr,
              flush=True)
        return seen

    def _attempt(self, check: str) -> str:
        try:
            desktop = self._running(SCREENS.get(check, SCREEN))
            with Stand(desktop) as stand:
                try:
                    seen = CHECKS[check](stand)
                except NoProtocol as lack:
                    return f"no {lack}"
                except (AssertionError, OSError, RuntimeError, subprocess.SubprocessError) as problem:
                    seen = " ".join(str(problem).split()) or repr(problem)
                if seen not in (OK, NOTHING) and check in desktop.unheeded:
                    return f"no {desktop.unheeded[check]}"
                if seen not in (OK, NOTHING):
                    self._keep_evidence(check)
        except (AssertionError, OSError, RuntimeError, subprocess.SubprocessError) as problem:
            seen = " ".join(str(problem).split()) or repr(problem)
        if seen not in (OK, NOTHING):
            self._stop()
        return seen

    def _running(self, screen: str) -> Session:
        if self._screen != screen:
            self._stop()
        if not self._desktop:
            self._desktop = self._kind(screen).__enter__()
            self._screen = screen
        return self._desktop

    def _stop(self) -> None:
        if self._desktop:
            self._desktop.__exit__(None, None, None)
            self._desktop = None

    def _keep_evidence(self, check: str) -> None:
        if self._results:
            self._desktop.screenshot().save(self._results / f"{self._kind.name}-{check}.png")


def printed(rows: dict[str, Row], markdown: bool) -> str:
    """Returns the table; what does not fit into a cell is numbered and follows below."""
    checks = list(dict.fromkeys(check for row in rows.values() for check in row))
    notes: list[str] = []

    def cell(words: str) -> str:
        if words in (OK, NOTHING, MISSING):
            return words
        if words not in notes:
            notes.append(words)
        return f"[{notes.index(words) + 1}]"

    lines = [["", *checks]] + [[name, *(cell(row[check]) for check in checks)] for name, row in rows.items()]
    if markdown:
        lines.insert(1, ["---"] * len(lines[0]))
        text = ["| " + " | ".join(line) + " |" for line in lines]
    else:
        widths = [max(map(len, column)) for column in zip(*lines)]
        text = ["  ".join(word.ljust(width) for word, width in zip(line, widths)).rstrip() for line in lines]
    listed = [f"{number}. {words}" if markdown else f"[{number}] {words}" for number, words in enumerate(notes, 1)]
    return "\n".join([*text, "", *listed]).rstrip()


def chosen(parser: argparse.ArgumentParser, names: list[str], known: list[str], what: str) -> list[str]:
    unknown = [name for name in names if name not in known]
    if unknown:
        parser.error(f"no such {what}: {', '.join(unknown)}; there are {', '.join(known)}")
    return [name for name in known if name in names] or known


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/desktops", description=__doc__)
    parser.add_argument("desktops", nargs="*", metavar="NAME", help="desktops; all if none is given")
    parser.add_argument("--checks", default="", metavar="A,B", help="only these checks")
    parser.add_argument("--times", type=int, default=1, metavar="N", help="do each check N times")
    parser.add_argument("--jobs", type=int, default=1, metavar="N", help="check N desktops at the same time")
    parser.add_argument("--binary-folder", metavar="DIR", help="a build; default ORVANE_BUILD or build/dev")
    parser.add_argument("--markdown", action="store_true", help="print the table as Markdown")
    parser.add_argument("--list", action="store_true", help="print the names of desktops and checks, and run none")
    options = parser.parse_args()
    kinds = {kind.name: kind for kind in DESKTOPS}
    if options.list:
        print("desktops:", *kinds, "\nchecks:", *CHECKS)
        return 0
    names = chosen(parser, options.desktops, list(kinds), "desktop")
    checks = chosen(parser, [c for c in options.checks.split(",") if c], list(CHECKS), "check")
    if options.binary_folder:
        os.environ["ORVANE_BUILD"] = options.binary_folder
    results = os.environ.get("ORVANE_TEST_RESULTS")

    def row(name: str) -> Row:
        if kinds[name].is_installed():
            return Runner(kinds[name], options.times, pathlib.Path(results) if results else None).row(checks)
        packages = shlex.join(["apt-get", "install", "--no-install-recommends", *kinds[name].packages, *TOOLS])
        print(f"desktops: {name} is missing: {packages}", file=sys.stderr)
        return {check: MISSING for check in checks}

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        rows = dict(zip(names, pool.map(row, names)))
    print(printed(rows, options.markdown))
    good = {OK, NOTHING}
    if os.environ.get("ORVANE_NO_INSTALL") == "1":
        good.add(MISSING)
    return 0 if all(words in good for row in rows.values() for words in row.values()) else 1


if __name__ == "__main__":
    sys.exit(main())
