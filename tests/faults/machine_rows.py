# SPDX-License-Identifier: GPL-3.0-or-later
"""A machine in trouble: services that hang, streams that are gone, limits, and files that are none."""

import contextlib
import pathlib
import socket
import threading

from fixture import Fixture
from rows import Row
from tools.tray import find_icon, start_tint2
from tools.waiting import wait_until


class SilentBus:
    """Accepts all connections and never answers. Use as a context manager."""

    def __init__(self, path: pathlib.Path):
        self.address = f"unix:path={path}"
        self._listener = socket.socket(socket.AF_UNIX)
        self._listener.bind(str(path))
        self._listener.listen()
        self._peers: list[socket.socket] = []

    def __enter__(self) -> "SilentBus":
        threading.Thread(target=self._accept, daemon=True).start()
        return self

    def __exit__(self, *_) -> None:
        self._listener.shutdown(socket.SHUT_RDWR)
        for peer in [self._listener, *self._peers]:
            peer.close()

    def _accept(self) -> None:
        with contextlib.suppress(OSError):
            while True:
                self._peers.append(self._listener.accept()[0])

    def has_been_asked(self) -> bool:
        return bool(self._peers)


def silent_bus(fixture: Fixture) -> str:
    bus = fixture.enter(SilentBus(fixture.folder / "silent"))
    start_tint2(fixture.desktop)
    program = fixture.start(DBUS_SESSION_BUS_ADDRESS=bus.address)
    took = program.wait_for("window-shown") / 1000
    fixture.plays()
    assert bus.has_been_asked()
    wait_until(lambda: find_icon(fixture.desktop), "the icon")
    return f"the window after {took:.1f} s; plays, has its icon in a tray of X11, and quits"


ROWS = [
    Row("machine.silent-bus", "a session bus that accepts and never answers", silent_bus),
]
