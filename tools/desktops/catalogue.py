# SPDX-License-Identifier: GPL-3.0-or-later
"""All desktops of the table, in its order."""

from __future__ import annotations

from tools.desktops import wayland, x11
from tools.desktops.session import Session

DESKTOPS: list[type[Session]] = [
    x11.Openbox, x11.KWin, x11.Mutter, x11.GnomeShell, x11.Cinnamon, x11.Xfwm, x11.Marco, x11.Metacity, x11.IceWM,
    x11.Fluxbox, x11.I3, x11.Awesome, x11.Bspwm, x11.NoWindowManager,
    wayland.KWinWayland, wayland.MutterWayland, wayland.GnomeShellWayland, wayland.Sway, wayland.Labwc,
    wayland.Weston,
]

# What the checks need besides the desktops and what the other tests need.
TOOLS = ("i3lock", "qt6-wayland")

PACKAGES = sorted({package for desktop in DESKTOPS for package in desktop.packages} | set(TOOLS))
