# SPDX-License-Identifier: GPL-3.0-or-later
"""The program around its player window: dialogs, tray, ending."""

from __future__ import annotations

from typing import Callable

from tools.backdrop import Backdrop
from tools.desktops.session import NoProtocol, Session
from tools.desktops.stand import LETTERS, OK, Stand, settled
from tools.processes import descendants, wait_for_ends
from tools.tray import TRAY_HEIGHT, find_icon
from tools.waiting import Timeout, wait_until


def dialogs(stand: Stand) -> str:
    """Settings and the about window come to the front, with the keyboard focus."""
    backdrop = stand.backdrop()
    if not stand.desktop.has_window_manager:
        raise NoProtocol("_NET_ACTIVE_WINDOW")
    probe = stand.start("window_probe")
    shows_dialog(stand, backdrop, "About Orvane", lambda: probe.tell("about"))
    stand.end(probe)
    stand.start()
    shows_dialog(stand, backdrop, "Orvane Settings", lambda: stand.command("--settings"))
    return OK


def shows_dialog(stand: Stand, backdrop: Backdrop, title: str, show: Callable[[], object]) -> None:
    stand.focus(backdrop)
    show()
    window = stand.desktop.window(title)
    try:
        wait_until(lambda: stand.covered(stand.desktop.frame(window)) == 0, "")
    except Timeout:
        raise AssertionError(f"{title}: behind") from None
    keys = len(backdrop.keys())
    stand.desktop.key(*LETTERS[:3])
    settled(lambda: len(backdrop.keys()))
    has_focus = stand.desktop.run("xdotool", "getwindowfocus").strip() == window
    assert has_focus and len(backdrop.keys()) == keys, f"{title}: without the focus"


def quits(stand: Stand) -> str:
    """Ends by its command with all that it has started, and its window is gone."""
    program = stand.start()
    children = descendants(program.process.pid)
    stand.command("--quit")
    code = program.wait_for_end()
    assert code == 0, f"ended with {code}"
    wait_for_ends(children, 2)
    assert not program.is_shown(), "its window is still there"
    return OK


def tray(stand: Stand) -> str:
    """An icon in a tray; either button opens the menu, near the icon."""
    desktop = stand.desktop
    if not desktop.has_tray:
        raise NoProtocol("StatusNotifierWatcher")
    strip = (desktop.size[1] - desktop.own_tray, desktop.own_tray) if desktop.own_tray else (0, TRAY_HEIGHT)
    if not desktop.own_tray:
        desktop.start_panel("top")
    stand.start()
    try:
        icon = wait_until(lambda: find_icon(desktop, *strip), "", 4)
    except Timeout:
        return "no icon"
    # Over the desktop alone, some compositors leave the focus where it is.
    stand.backdrop(wayland=desktop.is_wayland)
    area = menu_area(desktop, icon)
    # Neither on the menu nor on the player.
    elsewhere = (desktop.size[0] - 60 if icon[0] < desktop.size[0] // 2 else 60, 150)
    escape = (lambda: desktop.key("Escape"), "Escape")
    click = (lambda: desktop.click(*elsewhere), "a click elsewhere")
    for button, (end, how) in (
            ("1", escape), ("3", click if desktop.panel_shows_menus else escape), ("1", click)):
        before = desktop.screenshot().crop(area)

        def is_open() -> bool:
            return differs(before, desktop.screenshot().crop(area))

        desktop.point(*icon)
        desktop.button("click", button)
        try:
            wait_until(is_open, "", 3)
        except Timeout:
            return f"button {button} opens no menu near the icon"
        end()
        try:
            wait_until(lambda: not is_open(), "", 3)
        except Timeout:
            return f"the menu of button {button} stays open after {how}"
    return OK


def menu_area(desktop: Session, icon: tuple[int, int]) -> tuple[int, int, int, int]:
    """Returns a part of the screen that a menu of this icon covers; left, upper, right, lower."""
    x, y = icon
    top = y - 240 if desktop.own_tray else y + 40
    return max(0, x - 60), top, min(desktop.size[0], x + 60), top + 200


def differs(one, other) -> bool:
    pairs = list(zip(one.getdata(), other.getdata()))
    return sum(1 for a, b in pairs if max(abs(p - q) for p, q in zip(a, b)) > 60) > len(pairs) // 3
