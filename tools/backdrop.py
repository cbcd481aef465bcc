# SPDX-License-Identifier: GPL-3.0-or-later
"""Another program behind the player window."""

from __future__ import annotations

import os
import pathlib

from tools.desktop import Desktop
from tools.processes import end


class Backdrop:
    """A window of another program, as large as the screen: maximised or full-screen, of X11 or Wayland. Use as a
    context manager."""

    def __init__(self, desktop: Desktop, colour: tuple[int, int, int], full_screen: bool = False,
                 wayland: bool = False):
        self._desktop = desktop
        self._output = desktop.folder / "backdrop"
        environment = {"QT_QPA_PLATFORM": "wayland" if wayland else "xcb"} | desktop.environment
        with open(self._output, "w", encoding="utf-8") as output:
            probe = pathlib.Path(os.environ["ORVANE_BUILD"]) / "backdrop_probe"
            command = [str(probe), "#%02x%02x%02x" % colour, *(["fullscreen"] if full_screen else [])]
            self._process = desktop.background(command, env=environment, stdout=output)
        # Those of Wayland have no number that a client could ask for.
        self.window = "" if wayland else desktop.window("Backdrop")

    def __enter__(self) -> "Backdrop":
        return self

    def __exit__(self, *_) -> None:
        end(self._process)

    def raise_(self) -> None:
        self._desktop.activate(self.window)
        self._desktop.run("xdotool", "windowraise", self.window)

    def _events(self, kind: str) -> list[tuple[int, ...]]:
        lines = [line.split() for line in self._output.read_text(encoding="utf-8").splitlines()]
        return [tuple(int(word) for word in words[1:]) for words in lines if words[0] == kind]

    def clicks(self) -> list[tuple[int, ...]]:
        """Returns where it has been clicked."""
        return self._events("click")

    def keys(self) -> list[int]:
        """Returns the codes of the keys that it has received, once for each repetition."""
        return [code for code, in self._events("key")]
