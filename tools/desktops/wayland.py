# SPDX-License-Identifier: GPL-3.0-or-later
"""Wayland sessions, each in a window of the X server."""

from __future__ import annotations

import json
import re
import shutil

from tools.desktop import WaylandDesktop
from tools.desktops.session import NoProtocol, Session, WaylandSession
from tools.desktops.x11 import leave_overview
from tools.processes import end
from tools.waiting import wait_until

SWAY = """xwayland force
output * resolution {width}x{height} position 0 0 background #305060 solid_color
bar panel {{
    position bottom
    mode invisible
    height 30
}}
exec {script}
"""

LABWC = """<labwc_config>
    <core xwaylandPersistence="yes"/>
    <desktops number="2"/>
    <keyboard>
        <default/>
        <keybind key="W-1"><action name="GoToDesktop" to="1"/></keybind>
        <keybind key="W-2"><action name="GoToDesktop" to="2"/></keybind>
    </keyboard>
    <windowRules>
        <windowRule title="Orvane" skipTaskbar="yes" skipWindowSwitcher="yes">
            <action name="ToggleAlwaysOnTop"/>
        </windowRule>
    </windowRules>
</labwc_config>
"""

WAYBAR = {"layer": "top", "height": 30, "modules-right": ["tray"], "tray": {"icon-size": 24}}


class WaybarSession(WaylandSession):
    """Panels that are X11 programs do not start on it, or take no room."""

    panel_shows_menus = True

    def start_waybar(self, edge: str) -> None:
        settings = self.settings(".config/waybar/config", json.dumps(WAYBAR | {"position": edge}))
        self._panel = self.background(["waybar", "-c", str(settings)])

    def hide_panel(self) -> None:
        if self._panel:
            end(self._panel)
            self._panel = None


class Sway(WaybarSession):
    name = "sway"
    packages = ("sway", "xwayland", "waybar")
    command = ["sway"]
    variables = {"WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman"}

    def arguments(self) -> list[str]:
        width, height = self.size
        text = SWAY.format(width=width, height=height, script=self.script())
        return ["-c", str(self.settings(".config/sway/config", text))]

    def usable_area(self) -> tuple[int, int, int, int]:
        workspaces = json.loads(self.run("swaymsg", "-t", "get_workspaces"))
        area = next(w["rect"] for w in workspaces if w["focused"])
        return area["x"], area["y"], area["width"], area["height"]

    def show_panel(self) -> int:
        self.run("swaymsg", "bar", "panel", "mode", "dock")
        return self.size[1] - 30

    def start_panel(self, edge: str) -> str:
        """Its own has no menus. Returns "", as this has no window of X11."""
        before = self.usable_area()
        self.start_waybar(edge)
        wait_until(lambda: self.usable_area() != before, "the panel", 4)
        return ""

    def hide_panel(self) -> None:
        super().hide_panel()
        self.run("swaymsg", "bar", "panel", "mode", "invisible")

    def show_workspace(self, number: int) -> None:
        self.run("swaymsg", "workspace", "number", str(number + 1))


class Labwc(WaybarSession):
    name = "labwc"
    packages = ("labwc", "waybar", "wlr-randr", "xwayland")
    command = ["labwc"]
    variables = {"WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman"}
    # It gives every new window the keyboard.
    unheeded = {"typist": "WM_HINTS"}

    def arguments(self) -> list[str]:
        settings = self.settings(".config/labwc/rc.xml", LABWC)
        # It has no setting for the size of its output.
        size = f"wlr-randr --output X11-1 --custom-mode {self._size}"
        return ["-C", str(settings.parent), "-s", self.script(size)]

    def _start_session(self) -> None:
        super()._start_session()
        self.wait_for(lambda: self.usable_area() == (0, 0, *self.size), "its output's size")

    def show_panel(self) -> int:
        self.start_panel("bottom")
        return self.size[1] - 30

    def start_panel(self, edge: str) -> str:
        """Returns "", as this has no window of X11."""
        whole = self.usable_area()
        self.start_waybar(edge)
        self.wait_for(lambda: self.usable_area() != whole, "the panel")
        return ""

    def usable_area(self) -> tuple[int, int, int, int]:
        # It tells X11 of a change only when something else happens there.
        self.run("xprop", "-root", "-f", "NEWS", "32c", "-set", "NEWS", "1")
        return super().usable_area()

    def show_workspace(self, number: int) -> None:
        self.key(f"super+{number + 1}")


class KWinWayland(WaylandSession):
    name = "kwin_wayland"
    packages = ("kwin-wayland", "xwayland")
    command = ["kwin_wayland"]
    variables = {"KWIN_COMPOSE": "Q"}

    def arguments(self) -> list[str]:
        # A container may not grant the capability of the installed file, which then does not start; a copy has none.
        self.command = [shutil.copyfile(shutil.which("kwin_wayland"), self.folder / "kwin_wayland")]
        self.command[0].chmod(0o755)
        width, height = self.size
        return ["--x11-display", self.display, "--width", str(width), "--height", str(height), "--no-lockscreen",
                "--no-global-shortcuts", "--xwayland", "--socket", "session", "--exit-with-session", self.script()]


class MutterWayland(WaylandSession):
    name = "mutter-wayland"
    packages = ("mutter", "xwayland")
    command = ["mutter"]
    needs_system_bus = True

    def arguments(self) -> list[str]:
        width, height = self.size
        self.variables = {"MUTTER_DEBUG_DUMMY_MODE_SPECS": f"{width}x{height}"}
        return ["--nested", "--wayland", "--sm-disable", "--wayland-display", "session"]

    def variables_inside(self) -> dict[str, str] | None:
        """It does not run a command, but tells the number of its X server."""
        display = re.search(r"public X11 display (:\d+)", self.log.read_text(errors="replace"))
        keys = list((self.folder / "runtime").glob(".mutter-Xwaylandauth.*"))
        if not display or not keys:
            return None
        return {"DISPLAY": display.group(1), "WAYLAND_DISPLAY": "session", "XAUTHORITY": str(keys[0])}


class GnomeShellWayland(MutterWayland):
    name = "gnome-wayland"
    has_tray = False
    packages = ("gnome-shell", "xwayland")
    command = ["gnome-shell"]

    def _start_session(self) -> None:
        super()._start_session()
        leave_overview(self)


class Weston(WaylandDesktop, Session):
    name = "weston"
    packages = ("weston", "xwayland")
    command = ["weston"]
    is_wayland = True
    # It reads no input hint, and leaves a window that is shown or returns where it likes.
    unheeded = {"typist": "WM_HINTS", "full": "ConfigureWindow", "frame": "ConfigureWindow"}

    def show_workspace(self, number: int) -> None:
        raise NoProtocol("_NET_WM_DESKTOP")
