# SPDX-License-Identifier: GPL-3.0-or-later
"""The player window: its place, its level, dragging, resizing, full screen. Each check returns OK, or in a few words
what was seen; it may also raise an AssertionError with them."""

from __future__ import annotations

import contextlib
from typing import Callable

from tools.desktops.session import NoProtocol
from tools.desktops.stand import NOTHING, OK, Frame, Stand, corner, moved, settled
from tools.program import Program
from tools.waiting import Timeout, stays, wait_until

# Pixels. A drag begins only some pixels away from the press, and not every window manager makes up for them.
TOLERANCE = 12
# Seconds for which the button is held when the window does not move.
OUTLINE = 4
CORRECTED_WITHIN = 2
# Seconds until the player has noticed a panel and left its place.
PANEL_NOTICED = 3
# The same after another window covers it.
ON_TOP_AGAIN = 2
SMALLEST = (320, 180)
# In the middle of the screen, and 16:9.
FRAME = (300, 200, 480, 270)


def place(stand: Stand) -> str:
    """20 points from the lower right corner at the first start."""
    return moved(stand.frame(stand.start()), corner(stand.desktop.usable_area())) or OK


def panel(stand: Stand) -> str:
    """The same with a panel along the lower edge."""
    top = stand.panel()
    area = stand.desktop.usable_area()
    assert area[1] + area[3] <= top, "the usable area reaches below the panel"
    return moved(stand.frame(stand.start()), corner(area)) or OK


def late_panel(stand: Stand) -> str:
    """A panel that comes later does not cover the control bar, nor the player the panel."""
    program = stand.start()
    stand.frame(program)
    top = stand.panel()

    def overlap() -> int:
        _, y, _, height = program.frame()
        return y + height - top

    with contextlib.suppress(Timeout):
        wait_until(lambda: overlap() <= 0, "", PANEL_NOTICED)
    # It stays there.
    stand.frame(program)
    return OK if overlap() <= 0 else f"{overlap()} pixels over or under the panel"


def is_above(stand: Stand, full_screen: bool) -> str:
    # Some window managers take it off the screen meanwhile.
    frame = stand.frame(stand.start())
    stand.backdrop(full_screen)
    with contextlib.suppress(Timeout):
        # Some cover it until the program has noticed a full-screen window.
        wait_until(lambda: stand.covered(frame) == 0, "", ON_TOP_AGAIN)
    share = settled(lambda: round(stand.covered(frame), 1))
    if share and not stand.desktop.announces("_NET_WM_STATE_ABOVE"):
        raise NoProtocol("_NET_WM_STATE_ABOVE")
    return OK if share == 0 else f"{share:.0%} covered"


def above(stand: Stand) -> str:
    """Above a maximised window that has the focus."""
    return is_above(stand, full_screen=False)


def over_full(stand: Stand) -> str:
    """Above another program's full-screen window."""
    return is_above(stand, full_screen=True)


def workspaces(stand: Stand) -> str:
    """On all workspaces."""
    program = stand.start()
    stand.backdrop()
    frame = stand.frame(program)
    if not stand.desktop.has_window_manager:
        raise NoProtocol("_NET_WM_DESKTOP")
    stand.desktop.show_workspace(1)
    try:
        wait_until(lambda: stand.covered((0, 100, 200, 200)) == 0, "another workspace")
        return settled(lambda: OK if program.is_shown() and stand.frame(program) == frame and bar_is_seen(stand, frame)
                       else "only on the first workspace")
    finally:
        stand.desktop.show_workspace(0)


def bar_is_seen(stand: Stand, frame: Frame) -> bool:
    """Whether the light control bar is where it should be."""
    x, y, width, height = frame
    return min(stand.desktop.pixel(x + width // 2 - 40, y + height - 22)) > 180


def task_bar(stand: Stand) -> str:
    """Not in the task bar and not in the pager: what the window manager keeps of these states."""
    program = stand.start()
    if not stand.desktop.has_window_manager:
        raise NoProtocol("_NET_WM_STATE")
    stand.frame(program)
    states = stand.desktop.run("xprop", "-id", program.window(), "_NET_WM_STATE")
    lacking = [state for state in ("_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER") if state not in states]
    for state in lacking:
        if not stand.desktop.announces(state):
            raise NoProtocol(state)
    return "without " + ", ".join(lacking) if lacking else OK


def near(now: Frame, wanted: Frame) -> bool:
    return all(abs(a - b) <= TOLERANCE for a, b in zip(now, wanted))


def drag_until(stand: Stand, program: Program, start: tuple[int, int], by: tuple[int, int],
               arrived: Callable[[Frame], bool], what: str) -> None:
    """Drags from a place by a distance, and waits for the frame: with the button held, or after its release where the
    window manager shows an outline until then."""
    desktop = stand.desktop
    desktop.point(*start)
    desktop.button("mousedown", "1")
    for step in range(1, 21):
        desktop.point(start[0] + by[0] * step // 20, start[1] + by[1] * step // 20)

    def follows() -> bool:
        # One that has taken over the drag only now has missed all movements so far.
        desktop.move_pointer(-1, 0)
        desktop.move_pointer(1, 0)
        return arrived(program.frame())

    with contextlib.suppress(Timeout):
        wait_until(follows, "", OUTLINE)
    desktop.button("mouseup", "1")
    try:
        wait_until(lambda: arrived(program.frame()), "")
    except Timeout:
        raise AssertionError(f"{what}: {program.frame()}") from None


def drag(stand: Stand) -> str:
    """Moved by the picture."""
    stand.start_at(FRAME)
    program = stand.start()
    x, y, width, height = stand.frame(program)
    wanted = (x + 150, y + 80, width, height)
    drag_until(stand, program, stand.middle(program), (150, 80), lambda now: near(now, wanted), "not dragged")
    now = stand.frame(program)
    return OK if near(now, wanted) else f"after the drag {moved(now, wanted)}"


def resize(stand: Stand) -> str:
    """By the lower right corner: 16:9 afterwards, the opposite corner where it was, and no smaller than 320x180."""
    stand.start_at((300, 200, 480, 314))
    program = stand.start()
    x, y, width, height = stand.frame(program)
    drag_until(stand, program, (x + width - 2, y + height - 2), (90, 60),
               lambda now: now[2] > width + 40, "not resized")
    with contextlib.suppress(Timeout):
        # Not every window manager keeps the shape; the player corrects it then.
        wait_until(lambda: is_wide(program.frame()), "", CORRECTED_WITHIN)
    wide = stand.frame(program)
    assert wide[:2] == (x, y), f"resized, the other corner {moved(wide, (x, y, *wide[2:]))}"
    assert is_wide(wide), f"{wide[2]}x{wide[3]} is not 16:9"
    # The first half ends at the smallest size to the pixel, as some window managers refuse what is smaller.
    distance = (2 * (SMALLEST[0] - wide[2]), 2 * (SMALLEST[1] - wide[3]))
    drag_until(stand, program, (x + wide[2] - 2, y + wide[3] - 2), distance,
               lambda now: now[2] <= SMALLEST[0] + TOLERANCE, "not smaller")
    smallest = stand.frame(program)
    return OK if smallest[2:] == SMALLEST else f"smallest {smallest[2]}x{smallest[3]}"


def is_wide(frame: Frame) -> bool:
    """Whether it is 16:9."""
    return abs(frame[2] * 9 - frame[3] * 16) <= 16


def full_screen(stand: Stand) -> str:
    """Full screen and back to the same frame, by double clicks."""
    stand.start_at(FRAME)
    program = stand.start()
    before = stand.frame(program)
    screen = (0, 0, *stand.desktop.size)
    stand.desktop.double_click(*stand.middle(program))
    try:
        wait_until(lambda: program.frame() == screen, lambda: f"full screen is {program.frame()}")
    except Timeout:
        if not stand.desktop.announces("_NET_WM_STATE_FULLSCREEN"):
            raise NoProtocol("_NET_WM_STATE_FULLSCREEN") from None
        raise
    stand.frame(program)
    stand.desktop.double_click(*stand.middle(program))
    wait_until(lambda: program.frame() != screen, "still full screen")
    now = stand.frame(program)
    return f"back {moved(now, before)}" if moved(now, before) else OK


def frame(stand: Stand) -> str:
    """The same frame over three starts and three reopenings."""
    stand.start_at(FRAME)
    for number in range(3):
        program = stand.start()
        seen = moved(stand.frame(program), FRAME)
        assert not seen, f"start {number + 1}: {seen}"
        for again in range(3 if number == 2 else 0):
            stand.media("stop")
            wait_until(lambda p=program: not p.is_shown(), "not closed")
            stand.command()
            seen = moved(stand.frame(program), FRAME)
            assert not seen, f"reopening {again + 1}: {seen}"
        stand.end(program)
    return OK


def monitors(stand: Stand) -> str:
    """Dragged to a second monitor of double scale, it keeps its size in points, and the next start finds it there."""
    if stand.desktop.is_wayland:
        # The sessions inside an X server have one output.
        return NOTHING
    width, height = stand.desktop.size
    for name, left, output in (("left", 0, "screen"), ("right", width // 2, "none")):
        stand.desktop.run("xrandr", "--setmonitor", name, f"{width // 2}/300x{height}/340+{left}+0", output)
    scales = {"QT_SCREEN_SCALE_FACTORS": "1;2"}
    stand.start_at(FRAME)
    program = stand.start(**scales)
    assert not moved(stand.frame(program), FRAME), f"start on the first: {moved(stand.frame(program), FRAME)}"
    drag_until(stand, program, stand.middle(program), (width // 2, 100),
               lambda now: now[0] > width // 2, "not dragged to the second")
    doubled = (2 * FRAME[2], 2 * FRAME[3])
    with contextlib.suppress(Timeout):
        # Not while the window manager may still follow the pointer.
        wait_until(lambda: near((0, 0, *program.frame()[2:]), (0, 0, *doubled)), "", OUTLINE)
    now = stand.frame(program)
    assert near((0, 0, *now[2:]), (0, 0, *doubled)), f"{now[2]}x{now[3]} on the second, not {doubled[0]}x{doubled[1]}"
    stand.end(program)
    seen = moved(stand.frame(stand.start(**scales)), now)
    return f"next start: {seen}" if seen else OK


def lock(stand: Stand) -> str:
    """A lock screen stays above it."""
    if stand.desktop.is_wayland:
        # Its lock screens are the compositor's own.
        return NOTHING
    program = stand.start()
    frame = stand.frame(program)
    locker = stand.desktop.background(["i3lock", "-n", "-c", "%02x%02x%02x" % (0, 170, 0)])
    try:
        wait_until(lambda: stand.covered((0, 0, 300, 200)) == 1, "the lock screen")
        stays(lambda: stand.covered(frame) == 1, "seen on the lock screen", 1)
    finally:
        # Its grabs would keep the keys of all that follows.
        locker.kill()
        locker.wait()
    return OK
