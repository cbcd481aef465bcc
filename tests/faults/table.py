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

from ground import Ground
from outcome import keep_evidence, quit_cleanly
from rows import Row

MODULES = ("site_rows", "tool_rows", "file_rows", "desktop_rows", "input_rows")


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
        if row.needs_no_ground:
            return outcome(row.check(), True)
        with Ground(**row.ground) as ground:
            try:
                seen = row.check(ground)
                if row.quits:
                    quit_cleanly(ground.program)
                if row.keeps_settings:
                    ground.keeps_settings()
                return outcome(seen, True)
            except Exception:
                keep_evidence(row.name, ground.desktop)
                raise
    except Exception as problem:  # It must not end the other rows.
        return outcome(f"{type(problem).__name__}: {problem}", False)


def print_table(outcomes: list[Outcome]) -> None:
    for outcome in outcomes:
        verdict = "pass" if outcome.passed else "FAIL"
        done = textwrap.wrap(outcome.row.done, 44)
        seen = textwrap.wrap(" ".join(outcome.seen.split()), 76)
        for i in range(max(len(done), len(seen))):
            head = f"{verdict}  {outcome.row.name:26} {outcome.seconds:4.0f} s" if i == 0 else ""
            left = done[i] if i < len(done) else ""
            print(f"{head:39}  {left:44}  {seen[i] if i < len(seen) else ''}".rstrip())
    failed = sum(1 for outcome in outcomes if not outcome.passed)
    print(f"\n{len(outcomes)} rows, {failed} failed")


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--only", nargs="+", metavar="ROW", help="rows, or groups of them such as site")
    parser.add_argument("--jobs", type=int, default=2, help="rows that run at the same time")
    parser.add_argument("--list", action="store_true", help="names the rows and runs none")
    options = parser.parse_args()
    rows = [row for module in MODULES for row in importlib.import_module(module).ROWS]
    if options.only:
        rows = [row for row in rows if row.name in options.only or row.group in options.only]
    if not rows:
        parser.error("there are no such rows; --list names them")
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
