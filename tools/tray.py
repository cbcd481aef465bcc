# SPDX-License-Identifier: GPL-3.0-or-later
"""A panel with a tray, usually along the upper edge of the screen, and the program's icon in it."""

from __future__ import annotations

import subprocess

from tools.desktop import Desktop

TRAY_HEIGHT = 32
TINT2 = """panel_items = S
panel_size = 100% {height}
panel_position = {edge} center horizontal
systray_icon_size = 24
"""


def start_tint2(desktop: Desktop, edge: str = "top") -> subprocess.Popen:
    """Starts a panel whose tray embeds X windows."""
    settings = desktop.folder / "tint2rc"
    # Along the lower edge higher than the panel that a desktop may have there itself.
    height = TRAY_HEIGHT if edge == "top" else 2 * TRAY_HEIGHT
    settings.write_text(TINT2.format(height=height, edge=edge), encoding="ascii")
    return desktop.background(["tint2", "-c", str(settings)])


def is_icon_colour(pixel) -> bool:
    """The orange of the television in the icon; nothing else in the tray has it."""
    red, green, blue = pixel
    return red > 180 and 70 < green < 180 and blue < 110


def find_icon(desktop: Desktop, top: int = 0, height: int = TRAY_HEIGHT) -> tuple[int, int] | None:
    """Returns the middle of the icon, or None if the tray in this strip of the screen does not show it."""
    screen = desktop.screenshot()
    bar = screen.crop((0, top, screen.width, top + height))
    places = [(i % bar.width, i // bar.width) for i, pixel in enumerate(bar.getdata()) if is_icon_colour(pixel)]
    if len(places) < 30:
        return None
    x, y = (sum(place[axis] for place in places) // len(places) for axis in (0, 1))
    return x, top + y
