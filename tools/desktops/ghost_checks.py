# SPDX-License-Identifier: GPL-3.0-or-later
"""Ghost mode in front of another program's window."""

from __future__ import annotations

import time

from tools.backdrop import Backdrop
from tools.desktops.session import NoProtocol
from tools.desktops.stand import LETTERS, NOTHING, OK, Stand
from tools.program import Program
from tools.waiting import Timeout, stays, wait_until

# Seconds: promised is one, the rest is for the screenshots.
BACK_WITHIN = 1.2
VANISHED_WITHIN = 1.5
STEP = 4


def ghost(stand: Stand) -> str:
    """Over a window of X11."""
    return come_and_go(stand, wayland=False)


def ghost_wayland(stand: Stand) -> str:
    """Over a window of Wayland."""
    return come_and_go(stand, wayland=True) if stand.desktop.is_wayland else NOTHING


def come_and_go(stand: Stand, wayland: bool) -> str:
    # Not at the edge of the screen, where the pointer could not leave it; and without the question about keys.
    stand.start_at((400, 200, 480, 270), shortcutsInGhostMode=False)
    backdrop = stand.backdrop(wayland=wayland)
    program = stand.start("window_probe")
    program.tell("playing")
    stand.focus(backdrop)
    frame = stand.frame(program)
    if stand.covered(frame) and not stand.desktop.announces("_NET_WM_STATE_ABOVE"):
        raise NoProtocol("_NET_WM_STATE_ABOVE")
    assert stand.covered(frame) == 0, "covered from the start"
    program.tell("ghost on")
    inside, outside = stand.middle(program), (frame[0] - 100, frame[1] + 100)
    stand.desktop.point(*outside)

    stand.desktop.point(*inside)
    vanishes(stand, frame, "fast")
    stays(lambda: stand.is_vanished(frame), "seen again under a resting pointer", 1.5)
    click_and_type(stand, backdrop, program)
    assert stand.is_vanished(frame), "seen again after a click through it"
    stand.desktop.point(*outside)
    comes_back(stand, frame, "fast")

    glide(stand, inside)
    vanishes(stand, frame, "slow")
    glide(stand, outside)
    comes_back(stand, frame, "slow")
    return OK


def glide(stand: Stand, to: tuple[int, int]) -> None:
    """Moves the pointer in small steps."""
    x, y = stand.desktop.pointer()
    steps = max(abs(to[0] - x), abs(to[1] - y)) // STEP
    for step in range(1, steps + 1):
        stand.desktop.point(x + (to[0] - x) * step // steps, y + (to[1] - y) * step // steps)


def vanishes(stand: Stand, frame, pointer: str) -> None:
    try:
        wait_until(lambda: stand.is_vanished(frame), "", VANISHED_WITHIN)
    except Timeout:
        raise AssertionError(f"does not vanish ({pointer} pointer)") from None


def comes_back(stand: Stand, frame, pointer: str) -> None:
    since = time.monotonic()
    try:
        wait_until(lambda: stand.covered(frame) == 0, "", 5)
    except Timeout:
        raise AssertionError(f"never comes back ({pointer} pointer)") from None
    took = time.monotonic() - since
    assert took < BACK_WITHIN, f"back after {took:.1f} s ({pointer} pointer)"


def click_and_type(stand: Stand, backdrop: Backdrop, program: Program) -> None:
    """The click through the player and what is typed after it reach the other program."""
    clicks, keys = len(backdrop.clicks()), len(backdrop.keys())
    stand.desktop.button("click", "1")
    try:
        wait_until(lambda: len(backdrop.clicks()) == clicks + 1, "", 1)
    except Timeout:
        raise AssertionError("the click through it is lost") from None
    stand.desktop.key(*LETTERS[:5])
    try:
        wait_until(lambda: len(backdrop.keys()) == keys + 5, "", 1)
    except Timeout:
        took = " to the player" if program.tell("focus") == "ours" else ""
        lost = keys + 5 - len(backdrop.keys())
        raise AssertionError(f"{lost} of 5 letters after a click lost{took}") from None
