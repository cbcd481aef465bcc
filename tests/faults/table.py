# SPDX-License-Identifier: GPL-3.0-or-later
"""The table of faults: each row causes a fault and checks what the user then sees. Run it with
scripts/faults."""

import argparse
import concurrent.futures
import importlib
import sys
import textwrap
import time
from dataclasses import dataclass

from fixture import Fixture
from outcome import keep_evidence, quit_cleanly
from rows import Row

MODULES = ("site_rows", "tool_rows", "file_rows", "desktop_rows", "input_rows", "media_rows", "machine_rows")


@dataclass(frozen=True)
class Outcome:
    row: Row
    seen: str
    passed: bool
    seconds: float


def run_row(row: Row) -> Outcome:
    began = time.monotonic()

    def outcome(seen: str, passed: bool) -> Outcome:
        return Outcome(row, seen, passed, time.monotonic() - began)

    try:
        if row.needs_no_fixture:
            return outcome(row.check(), True)
        with Fixture(**row.fixture) as fixture:
            try:
                seen = row.check(fixture)
                if row.quits:
                    quit_cleanly(fixture.program)
                if row.keeps_settings:
                    fixture.keeps_settings()
                return outcome(seen, True)
            except Exception:
                keep_evidence(row.name, fixture.desktop)
                raise
    except Exception as problem:  # The other rows still run.
        return outcome(f"{type(problem).__name__}: {problem}", False)


def print_table(outcomes: list[Outcome]) -> None:
    for outcome in outcomes:
        verdict = "pass" if outcome.passed else "FAIL"
        fault = textwrap.wrap(outcome.row.fault, 44)
        seen = textwrap.wrap(" ".join(outcome.seen.split()), 76)
        for i in range(max(len(fault), len(seen))):
            head = f"{verdict}  {outcome.row.name:26} {outcome.seconds:4.0f} s" if i == 0 else ""
            left = fault[i] if i < len(fault) else ""
            print(f"{head:39}  {left:44}  {seen[i] if i < len(seen) else ''}".rstrip())
    failed = sum(1 for outcome in outcomes if not outcome.passed)
    print(f"\n{len(outcomes)} rows, {failed} failed")


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--only", nargs="+", metavar="ROW", help="rows or groups of rows, such as site")
    parser.add_argument("--jobs", type=int, default=2, help="number of rows to run at the same time")
    parser.add_argument("--list", action="store_true", help="print the names of the rows and run none")
    options = parser.parse_args()
    rows = [row for module in MODULES for row in importlib.import_module(module).ROWS]
    if options.only:
        rows = [row for row in rows if row.name in options.only or row.group in options.only]
    if not rows:
        parser.error("no such rows; --list prints their names")
    if options.list:
        print("\n".join(row.name for row in rows))
        return 0
    outcomes = []
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for done in concurrent.futures.as_completed([pool.submit(run_row, row) for row in rows]):
            outcome = done.result()
            outcomes.append(outcome)
            print(f"faults: {'pass' if outcome.passed else 'FAIL'} {outcome.row.name}", file=sys.stderr, flush=True)
    print_table(sorted(outcomes, key=lambda outcome: rows.index(outcome.row)))
    return 0 if all(outcome.passed for outcome in outcomes) else 1


if __name__ == "__main__":
    sys.exit(main())
