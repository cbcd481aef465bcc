# SPDX-License-Identifier: GPL-3.0-or-later
"""A machine in trouble: services that hang, streams that are gone, limits, and files that are none."""

import contextlib
import json
import pathlib
import socket
import threading

from fixture import UNKNOWN_KEY, Fixture
from outcome import quit_cleanly
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


# Windows

def large_frame(fixture: Fixture) -> str:
    seen = []
    for size in ((30000, 20000), (1600, 900)):
        stored = UNKNOWN_KEY | {"windowFrame": f"{{{{0, 0}}, {{{size[0]}, {size[1]}}}}}"}
        fixture.preferences.write_text(json.dumps(stored), encoding="ascii")
        program = fixture.start()
        program.wait_for("window-shown")
        x, y, width, height = program.frame()
        assert x >= 0 and y >= 0 and x + width <= 1280 and y + height <= 720, f"at {program.frame()}"
        assert abs(width * 9 - height * 16) <= 16, f"{width} x {height} is not 16:9"
        fixture.plays()
        seen.append(f"{size[0]} x {size[1]} as {width} x {height}")
        quit_cleanly(program)
    return f"shows and plays {', '.join(seen)}"


ROWS = [
    Row("machine.silent-bus", "a session bus that accepts and never answers", silent_bus),
    Row("machine.large-frame", "a saved frame larger than the screen", large_frame, quits=False),
]
