# SPDX-License-Identifier: GPL-3.0-or-later
"""Somebody who types into another program while the player does something: no letter may be lost."""

from __future__ import annotations

import itertools
import threading
import time
from typing import Callable

from tools.backdrop import Backdrop
from tools.desktops.stand import LETTER, LETTERS, OK, Stand
from tools.waiting import Timeout, wait_until

# Letters that follow when the action is over.
AFTERWARDS = 8


def lost_during(stand: Stand, backdrop: Backdrop, action: Callable[[], object]) -> int:
    """Types 20 letters during the action, more if it lasts longer; returns how many the other program did not get."""
    before = len(backdrop.keys())
    typed: list[int] = []
    is_over = threading.Event()

    def type_on() -> None:
        left = AFTERWARDS
        while left > 0 or len(typed) < len(LETTERS):
            began = time.monotonic()
            typed.append(LETTERS[len(typed) % len(LETTERS)])
            stand.desktop.key(typed[-1])
            left -= is_over.is_set()
            time.sleep(max(0, began + LETTER - time.monotonic()))

    typist = threading.Thread(target=type_on)
    typist.start()
    try:
        action()
    finally:
        is_over.set()
        typist.join()

    def arrived() -> list[int]:
        # A session on a busy machine repeats a letter whose release it gets late; none is typed twice in a row.
        return [letter for letter, _ in itertools.groupby(backdrop.keys()[before:])]

    try:
        wait_until(lambda: len(arrived()) >= len(typed), "the letters", 1)
    except Timeout:
        return len(typed) - len(arrived())
    assert arrived() == typed, "the letters arrived in another order"
    return 0


def typist(stand: Stand) -> str:
    backdrop = stand.backdrop()
    program = None
    lost: dict[str, int] = {}

    def start() -> None:
        nonlocal program
        program = stand.start()

    def reopen() -> None:
        stand.command()
        program.window()

    def close() -> None:
        stand.media("stop")
        wait_until(lambda: not program.is_shown(), "a closed window")

    for name, action in (
            ("start", start), ("second start", stand.command), ("--play", lambda: stand.command("--play", "alarabiya")),
            ("--next", lambda: stand.command("--next")), ("reopening", reopen)):
        if name == "reopening":
            close()
        if lost and list(lost.values())[-1]:
            stand.focus(backdrop)
        lost[name] = lost_during(stand, backdrop, action)
    losses = [f"{name} {count}" for name, count in lost.items() if count]
    return "letters lost: " + ", ".join(losses) if losses else OK
