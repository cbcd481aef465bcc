# SPDX-License-Identifier: GPL-3.0-or-later
"""Window managers and desktops on X11."""

from __future__ import annotations

from tools.desktops.session import Session, X11Session


# Tiles all windows that no rule excepts; the rule is the one of docs/desktops.md.
BSPWM = """#!/bin/sh
bspc monitor -d one two
bspc rule -a '*:*:Orvane' state=floating sticky=on layer=above focus=off
"""


class Openbox(X11Session):
    name = "openbox"
    packages = ("openbox", "picom")
    command = ["openbox"]

    def _start_window_manager(self) -> None:
        super()._start_window_manager()
        self.start_compositor()


class KWin(X11Session):
    name = "kwin_x11"
    packages = ("kwin-x11",)
    command = ["kwin_x11"]
    variables = {"KWIN_COMPOSE": "O2"}


class Mutter(X11Session):
    name = "mutter"
    packages = ("mutter",)
    command = ["mutter", "--x11", "--sm-disable"]
    needs_system_bus = True


class GnomeShell(X11Session):
    name = "gnome-shell"
    packages = ("gnome-shell",)
    command = ["gnome-shell", "--x11", "--sm-disable"]
    needs_system_bus = True
    has_tray = False

    def _start_window_manager(self) -> None:
        super()._start_window_manager()
        leave_overview(self)


def leave_overview(session: Session) -> None:
    """It starts with its overview of all windows, which a user leaves for the first one."""
    call = ["gdbus", "call", "--session", "--dest", "org.gnome.Shell", "--object-path", "/org/gnome/Shell",
            "--method"]
    properties = "org.freedesktop.DBus.Properties"

    def is_in_overview() -> str:
        return session.run(*call, f"{properties}.Get", "org.gnome.Shell", "OverviewActive")

    session.wait_for(lambda: "true" in is_in_overview(), "its overview")

    def has_left() -> bool:
        # While it is still being animated this has no effect.
        session.run(*call, f"{properties}.Set", "org.gnome.Shell", "OverviewActive", "<false>")
        return "false" in is_in_overview()

    session.wait_for(has_left, "the end of its overview")


class Xfwm(X11Session):
    name = "xfwm4"
    packages = ("xfwm4",)
    command = ["xfwm4", "--compositor=on"]


class Marco(X11Session):
    name = "marco"
    packages = ("marco", "mate-settings-daemon-common")
    command = ["marco", "--composite"]


class Metacity(X11Session):
    name = "metacity"
    packages = ("metacity",)
    command = ["metacity"]


class Cinnamon(X11Session):
    name = "cinnamon"
    packages = ("cinnamon",)
    command = ["cinnamon", "--replace"]
    needs_system_bus = True
    own_tray = 40

    def _start_window_manager(self) -> None:
        super()._start_window_manager()
        self.wait_for(lambda: self.usable_area() != (0, 0, *self.size), "its panel")
        # Until the animation of its start is over it keeps all input for itself.
        state = ["gdbus", "call", "--session", "--dest", "org.Cinnamon", "--object-path", "/org/Cinnamon",
                 "--method", "org.Cinnamon.GetRunState"]
        self.wait_for(lambda: "2" in self.run(*state), "the end of its animation")


class IceWM(X11Session):
    name = "icewm"
    packages = ("icewm",)
    command = ["icewm"]
    own_tray = 30


class Fluxbox(X11Session):
    name = "fluxbox"
    packages = ("fluxbox",)
    command = ["fluxbox"]
    own_tray = 24


class I3(X11Session):
    name = "i3"
    packages = ("i3-wm",)
    command = ["i3"]

    def _start_window_manager(self) -> None:
        # Without a file it asks for one.
        self.command = ["i3", "-c", str(self.settings(".config/i3/config", "# i3 config file (v4)\n"))]
        super()._start_window_manager()

    def show_workspace(self, number: int) -> None:
        self.run("i3-msg", "workspace", "number", str(number + 1))


class Awesome(X11Session):
    """It places other programs' panels anywhere, so its own is moved."""

    name = "awesome"
    packages = ("awesome",)
    command = ["awesome"]

    def show_panel(self) -> int:
        return self._own_panel("bottom")

    def hide_panel(self) -> None:
        super().hide_panel()
        self._own_panel("top")

    def _own_panel(self, edge: str) -> int:
        """Returns its upper edge where that bounds the usable area, else 0."""
        told = self.run("awesome-client", f"local w = screen.primary.mywibox; w.position = '{edge}'; return w.y")
        self._panel_top = round(float(told.split()[-1]))
        return self._panel_top


class Bspwm(X11Session):
    name = "bspwm"
    packages = ("bspwm",)
    command = ["bspwm"]

    def _start_window_manager(self) -> None:
        settings = self.settings(".config/bspwm/bspwmrc", BSPWM)
        self.command = ["bspwm", "-c", str(settings)]
        super()._start_window_manager()

    def show_workspace(self, number: int) -> None:
        self.run("bspc", "desktop", "-f", f"^{number + 1}")


class NoWindowManager(Session):
    name = "none"
    has_window_manager = False

    def _start_window_manager(self) -> None:
        """There is none."""
