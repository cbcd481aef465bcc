# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader knows of a program: its windows as trees of roles and names, and what has the focus.

usage: accessibility.py PID     Answers each line on its standard input with lines that end with an empty one:
"tree" prints the windows that are shown, "controls" the controls of the active window that can have the focus,
and "focus" the one that has it. Of each it prints the role, the name, the text of its caption, and its description, value and
states, where there are any."""

from __future__ import annotations

import subprocess
import sys

from tools.desktop import Desktop
from tools.waiting import wait_until

# The variables with which the program has to be started.
ALWAYS_ON = {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}

SPOKEN_STATES = ("CHECKED", "SELECTED", "EXPANDED")
# Newer versions have other names.
ROLES = {"button": "push button"}
# Without a name they only hold others.
CONTAINERS = ("filler", "layered pane", "panel", "label", "viewport", "scroll pane")
# Not controls of their own.
PARTS = ("frame", "dialog", "page tab", "list item", "menu item")


def start_service(desktop: Desktop) -> None:
    """To be called before the program is started."""
    answer = desktop.run("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
                         "--method", "org.a11y.Bus.GetAddress")
    assert "unix:" in answer, "no accessibility bus"


class ScreenReader:
    """Sees the windows of a program on a desktop, until the desktop ends."""

    def __init__(self, desktop: Desktop, pid: int):
        self._process = desktop.background(
            ["/usr/bin/python3", "-B", "-m", "tools.accessibility", str(pid)],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def _ask(self, question: str) -> list[str]:
        self._process.stdin.write(question + "\n")
        self._process.stdin.flush()
        lines = []
        while (line := self._process.stdout.readline()).strip():
            lines.append(line.rstrip("\n"))
        return lines

    def tree(self, window: str) -> list[str]:
        """Returns the lines of the window with this name; empty if it is not shown."""
        lines = self._ask("tree")
        first = [i for i, line in enumerate(lines) if line.startswith(("frame", "dialog")) and f'"{window}"' in line]
        if not first:
            return []
        rest = [i for i, line in enumerate(lines) if i > first[0] and not line.startswith(" ")]
        return lines[first[0]:rest[0] if rest else None]

    def controls(self) -> list[str]:
        return self._ask("controls")

    def focus(self) -> str:
        return "".join(self._ask("focus"))

    def wait_for_focus(self, *words: str) -> str:
        """Waits until what is known of the control with the focus contains all of them; returns it."""
        def found():
            focus = self.focus()
            return focus if all(word in focus for word in words) else None

        return wait_until(found, lambda: f"the focus at {words}; it is at {self.focus()}")


def main() -> None:
    # Only here, as those who start this need none of it.
    import pyatspi
    from gi.repository import GLib

    def described(thing) -> str:
        role = thing.getRoleName()
        text = f'{ROLES.get(role, role)} "{thing.name}"'
        for relation in thing.getRelationSet():
            if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY:
                text += f' for "{relation.getTarget(0).name}"'
        if thing.description:
            text += f' "{thing.description}"'
        try:
            text += f" {thing.queryValue().currentValue:g}"
        except NotImplementedError:
            pass
        held = thing.getState()
        # Of tabs only newer versions of Qt tell it; the name of their list does in all.
        states = [name for name in SPOKEN_STATES if (role, name) != ("page tab", "SELECTED")]
        text += "".join(f" {name.lower()}" for name in states if held.contains(getattr(pyatspi, "STATE_" + name)))
        return text if held.contains(pyatspi.STATE_SENSITIVE) else text + " disabled"

    def application():
        found = [each for each in pyatspi.Registry.getDesktop(0) if each and each.get_process_id() == int(sys.argv[1])]
        return found[0] if found else None

    def parts(thing):
        if thing is None:
            return []
        thing.clear_cache()
        shown = (pyatspi.STATE_VISIBLE, pyatspi.STATE_SHOWING)
        return [child for child in thing if child and all(child.getState().contains(state) for state in shown)]

    def is_container(thing) -> bool:
        return thing.getRoleName() in CONTAINERS and not thing.name

    def tree(thing, indent: str = "") -> list[str]:
        lines = []
        for child in parts(thing):
            if is_container(child):
                lines += tree(child, indent)
            else:
                lines += [indent + described(child), *tree(child, indent + "  ")]
        return lines

    def controls(thing) -> list[str]:
        lines = []
        for child in parts(thing):
            held = child.getState()
            if child.getRoleName() == "page tab list":
                # The tab that is chosen gets the focus.
                lines.append(f'page tab "{child.name}"')
            elif (held.contains(pyatspi.STATE_FOCUSABLE) and held.contains(pyatspi.STATE_SENSITIVE)
                    and child.getRoleName() not in PARTS and not is_container(child)):
                lines.append(described(child))
            lines += controls(child)
        return lines

    def active_window():
        windows = [each for each in parts(application()) if each.getState().contains(pyatspi.STATE_ACTIVE)]
        return windows[0] if windows else None

    def focus(thing) -> list[str]:
        for child in parts(thing):
            if inside := focus(child):
                return inside
            if child.getState().contains(pyatspi.STATE_FOCUSED) and not is_container(child):
                return [described(child)]
        return []

    for line in sys.stdin:
        question = line.strip()
        try:
            if question == "tree":
                answer = tree(application())
            else:
                answer = {"controls": controls, "focus": focus}[question](active_window())
        except GLib.GError:
            # Something was taken away meanwhile. Who waits for something asks again.
            answer = []
        print(*answer, "", sep="\n", flush=True)


if __name__ == "__main__":
    main()
