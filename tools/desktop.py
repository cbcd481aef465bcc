# SPDX-License-Identifier: GPL-3.0-or-later
"""A desktop of its own for a run of the real program: an X server, a window manager, a compositor, a session
bus and temporary XDG folders. Any number of them can run at the same time."""

from __future__ import annotations

import contextlib
import fcntl
import os
import pathlib
import re
import subprocess
import tempfile

from tools.processes import end
from tools.waiting import wait_until
from tools.xclient import XClient

BUS = """<busconfig>
  <type>session</type>
  <listen>{address}</listen>
  <servicedir>{services}</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""
STARTED_BY_THE_BUS = ("org.a11y.Bus.service", "org.xfce.Xfconf.service")
FIRST_DISPLAY, LAST_DISPLAY = 90, 589


def start_x_server(size: str) -> tuple[subprocess.Popen, str]:
    """Starts a server; returns it and the name of its display when it accepts clients.

    Each server inherits a locked file for its number. Its own lock does not help, since -displayfd turns that off,
    and one in a network namespace of its own sees no other server and would replace the socket of one of them."""
    for number in range(FIRST_DISPLAY, LAST_DISPLAY + 1):
        try:
            lock = open(f"{tempfile.gettempdir()}/orvane-display-{number}.lock", "wb")
        except PermissionError:
            # Another user's.
            continue
        with lock, contextlib.suppress(BlockingIOError):
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            if server := start_x_server_as(number, size, lock.fileno()):
                return server, f":{number}"
    raise RuntimeError("Xvfb did not start")


def start_x_server_as(number: int, size: str, lock: int) -> subprocess.Popen | None:
    """Returns the server when it accepts clients, None if a foreign one has the number."""
    read_end, write_end = os.pipe()
    # Without -noreset the server restarts when its last client disconnects, which can be an xprop that
    # looked for the window manager just before that connected.
    command = ["Xvfb", f":{number}", "-displayfd", str(write_end), "-nolisten", "tcp", "-noreset"]
    command += ["-screen", "0", f"{size}x24"]
    server = subprocess.Popen(command, pass_fds=[write_end, lock], stderr=subprocess.DEVNULL)
    os.close(write_end)
    with os.fdopen(read_end) as answer:
        if answer.readline().strip():
            return server
    end(server)
    return None


class Desktop(XClient):
    """Use as a context manager, which ends everything that it has started. `environment` is for the programs that
    run here."""

    def __init__(self, size: str = "1280x720", compositor: bool = False):
        super().__init__()
        self._size = size
        self._compositor = compositor
        self._stack = contextlib.ExitStack()
        self.folder = pathlib.Path()

    def __enter__(self) -> "Desktop":
        try:
            self._start()
        except BaseException:
            self._stack.close()
            raise
        return self

    def __exit__(self, *_) -> None:
        self._stack.close()

    def _start(self) -> None:
        self.folder = pathlib.Path(self._stack.enter_context(tempfile.TemporaryDirectory()))
        server, self.display = start_x_server(self._size)
        self._stack.callback(end, server)
        self.x_server = server.pid
        home = self.folder / "home"
        runtime = self.folder / "runtime"
        for folder in (home, runtime):
            folder.mkdir(mode=0o700)
        inherited = {k: v for k, v in os.environ.items() if not k.startswith(("XDG_", "ORVANE_", "QT_", "LC_"))}
        for name in ("WAYLAND_DISPLAY", "LANGUAGE"):
            inherited.pop(name, None)
        self.environment = inherited | {
            "DISPLAY": self.display,
            "HOME": str(home),
            "XDG_CONFIG_HOME": str(home / ".config"),
            "XDG_CACHE_HOME": str(home / ".cache"),
            "XDG_DATA_HOME": str(home / ".local/share"),
            "XDG_RUNTIME_DIR": str(runtime),
            "LANG": "C.UTF-8",
        }
        # A sound server that libpulse starts by itself would outlive the test.
        sound = home / ".config/pulse/client.conf"
        sound.parent.mkdir(parents=True)
        sound.write_text("autospawn = no\n", encoding="ascii")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={runtime}/bus"
        self.start_bus()
        self._start_session()

    def _start_session(self) -> None:
        self._start_window_manager()
        if self._compositor:
            self.start_compositor()

    def background(self, command: list[str], **options) -> subprocess.Popen:
        """Starts a process that ends with the desktop."""
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        process = subprocess.Popen(command, **({"env": self.environment} | quiet | options))
        self._stack.callback(end, process)
        return process

    def start_bus(self) -> None:
        settings = self.folder / "bus.conf"
        if not settings.exists():
            self._configure_bus(settings)
        command = ["dbus-daemon", f"--config-file={settings}", "--nofork", "--print-address=1"]
        self._bus = self.background(command, stdout=subprocess.PIPE, text=True)
        # It prints its address when it listens.
        if not self._bus.stdout.readline():
            raise RuntimeError("dbus-daemon did not start")

    def _configure_bus(self, settings: pathlib.Path) -> None:
        """Starts no service of this machine's own desktop, such as a file manager or a portal."""
        services = self.folder / "services"
        services.mkdir()
        for name in STARTED_BY_THE_BUS:
            (services / name).symlink_to(pathlib.Path("/usr/share/dbus-1/services") / name)
        address = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        settings.write_text(BUS.format(address=address, services=services), encoding="ascii")

    def kill_bus(self) -> None:
        self._bus.kill()
        self._bus.wait()

    def start_compositor(self) -> subprocess.Popen:
        compositor = self.background(["picom", "--backend", "xrender"])
        wait_until(lambda: "picom" in self.run("xwininfo", "-root", "-tree"), "the compositor")
        return compositor

    def _start_window_manager(self) -> None:
        self._window_manager = self.background(["openbox"])
        wait_until(self._has_window_manager, "the window manager")

    def replace_window_manager(self) -> None:
        """Has the window manager crash, and starts another one."""
        self._window_manager.kill()
        self._window_manager.wait()
        wait_until(lambda: not self._has_window_manager(), "the end of the window manager")
        self._start_window_manager()

    def _has_window_manager(self) -> bool:
        """A crashed one leaves its property on the root window, but the window that the property names is gone."""
        mark = self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK").rpartition(" ")[2].strip()
        return mark.startswith("0x") and mark in self.run("xprop", "-id", mark, "_NET_SUPPORTING_WM_CHECK")


class WaylandDesktop(Desktop):
    """A Wayland session in which programs run through XWayland. Input and screenshots are those of the X server
    around it, in which the whole session is one window as large as the screen."""

    def _start_session(self) -> None:
        width, height = self._size.split("x")
        log = self.folder / "weston.log"
        self.background([
            "weston", "--backend=x11-backend.so", "--xwayland", "--use-pixman", "--no-config",
            "--idle-time=0", f"--width={width}", f"--height={height}", "--socket=session", f"--log={log}",
        ])
        line = r"xserver listening on display (:\d+)"
        listening = wait_until(
            lambda: log.exists() and re.search(line, log.read_text(encoding="utf-8")), "XWayland")
        self.environment |= {"WAYLAND_DISPLAY": "session", "DISPLAY": listening.group(1)}
        # XWayland starts with its first client; the session is ready when its background is painted.
        wait_until(self._has_window_manager, "XWayland's window manager")
        wait_until(lambda: max(self.pixel(600, 300)) > 0, "the background")
        # The session adds up the pointer's movements from its own corner.
        self.move_pointer(-int(width), -int(height))
