# SPDX-License-Identifier: GPL-3.0-or-later
"""A tray with the icon, for tests that choose from its menu."""

from case import MenuCase
from desktop import wait_until

TINT2 = "panel_items = S\npanel_size = 100% 32\npanel_position = top center horizontal\nsystray_icon_size = 24\n"


def is_of_the_icon(pixel) -> bool:
    """The orange of the drawn television, which is on nothing else here."""
    red, green, blue = pixel
    return red > 180 and 70 < green < 180 and blue < 110


class TrayCase(MenuCase):
    def start_tint2(self):
        """A tray that embeds windows."""
        settings = self.desktop.folder / "tint2rc"
        settings.write_text(TINT2, encoding="ascii")
        return self.desktop.background(["tint2", "-c", str(settings)])

    def icon(self) -> tuple[int, int] | None:
        """Where it is, in the bar along the upper edge of the screen."""
        bar = self.desktop.screenshot().crop((0, 0, 1280, 32))
        places = [(i % 1280, i // 1280) for i, pixel in enumerate(bar.getdata()) if is_of_the_icon(pixel)]
        if len(places) < 30:
            return None
        return tuple(sum(place[axis] for place in places) // len(places) for axis in (0, 1))

    def wait_for_icon(self) -> tuple[int, int]:
        return wait_until(self.icon, "the icon in the tray")

    def open_menu(self):
        """The tray's."""
        self.desktop.click(*self.wait_for_icon())
        self.wait_for_menu()
