# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks that a run of the program ends cleanly, and keeps the evidence of a failure."""

import os
import pathlib
import shutil
import time

from tools.desktop import Desktop
from tools.processes import descendants, wait_for_ends
from tools.program import Program
from tools.waiting import DEADLINE

BUILD = os.environ["ORVANE_BUILD"]
RESULTS = pathlib.Path(os.environ.get("ORVANE_TEST_RESULTS", "results"))
# Seconds. The program needs 0.4 s at most. Waiting for a server at the end would take far longer than this,
# which a busy machine or a build with sanitizers does not reach.
QUIT_LIMIT = 10.0
ALARMS = ("AddressSanitizer", "LeakSanitizer", "runtime error:", "QFATAL", "ASSERT")


def keep_evidence(name: str, desktop: Desktop) -> None:
    """Copies the screen, the log and the milestones to the results of this test or row."""
    folder = RESULTS / name
    folder.mkdir(parents=True, exist_ok=True)
    desktop.screenshot().save(folder / "screen.png")
    for file in ("program.log", "timeline"):
        if (desktop.folder / file).exists():
            shutil.copy(desktop.folder / file, folder)
    print(f"the screen and the log are in {folder}", flush=True)


def check_no_alarm(program: Program) -> None:
    log = program.log()
    for alarm in ALARMS:
        assert alarm not in log, f"{alarm} in the log: {log[-3000:]}"


def is_installation(command: str) -> bool:
    """Whether it may outlive the program."""
    return " install " in command and command.endswith("yt-dlp")


def quit_cleanly(program: Program) -> None:
    """Ends the program as a session manager does: it must end soon, with exit code 0, and leave no child behind but an
    installation, which ends by itself."""
    process = program.process
    assert process.poll() is None, f"the program ended with {process.returncode}: {program.log()[-3000:]}"
    children = descendants(process.pid)
    before = time.monotonic()
    code = program.quit()
    took = time.monotonic() - before
    assert code == 0, f"exit code {code}: {program.log()[-3000:]}"
    assert took < QUIT_LIMIT, f"the program took {took:.1f} s to end"
    wait_for_ends([child for child in children if is_installation(child[1])], DEADLINE)
    wait_for_ends([child for child in children if not is_installation(child[1])], QUIT_LIMIT)
    check_no_alarm(program)
