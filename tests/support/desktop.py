# SPDX-License-Identifier: GPL-3.0-or-later
"""A desktop of its own for a run of the real program: an X server, a window manager, a compositor, a
session bus and throw-away XDG folders. Everything it starts ends with it."""

from __future__ import annotations

import contextlib
import json
import os
import pathlib
import re
import signal
import subprocess
import tempfile
import time

from PIL import Image, ImageChops, ImageGrab, ImageStat

DEADLINE = float(os.environ.get("ORVANE_TEST_DEADLINE", "60"))


# Turns off every service that is not on this machine.
OFFLINE = {"ORVANE_GITHUB_API": "", "ORVANE_GITHUB": "", "ORVANE_GITHUB_RAW": "",
           "ORVANE_TELEMETRY": ""}


class Timeout(AssertionError):
    pass


def wait_until(condition, what: str, deadline: float = DEADLINE):
    """Returns the first true value of `condition`; raises when it does not come in time."""
    end = time.monotonic() + deadline
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Timeout(f"not within {deadline:.0f} s: {what}")
        time.sleep(0.02)


class Desktop:
    """Use as a context manager. `environment` is what a program on this desktop runs with."""

    def __init__(self, size: str = "1280x720", compositor: bool = False):
        self._size = size
        self._compositor = compositor
        self._stack = contextlib.ExitStack()
        self.folder = pathlib.Path()
        self.display = ""
        self.environment: dict[str, str] = {}

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
        self._start_x_server()
        home = self.folder / "home"
        runtime = self.folder / "runtime"
        for folder in (home, runtime):
            folder.mkdir(mode=0o700)
        kept = {k: v for k, v in os.environ.items() if not k.startswith(("XDG_", "ORVANE_", "QT_"))}
        kept.pop("WAYLAND_DISPLAY", None)
        self.environment = kept | {
            "DISPLAY": self.display,
            "HOME": str(home),
            "XDG_CONFIG_HOME": str(home / ".config"),
            "XDG_CACHE_HOME": str(home / ".cache"),
            "XDG_DATA_HOME": str(home / ".local/share"),
            "XDG_RUNTIME_DIR": str(runtime),
            "LANG": "C.UTF-8",
        }
        # A sound server that a library starts by itself would outlive the test.
        sound = home / ".config/pulse/client.conf"
        sound.parent.mkdir(parents=True)
        sound.write_text("autospawn = no\n", encoding="ascii")
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={runtime}/bus"
        self.start_bus()
        self._start_session()

    def start_bus(self) -> None:
        address = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        command = ["dbus-daemon", "--session", "--nofork", f"--address={address}", "--print-address=1"]
        self._bus = self.background(command, stdout=subprocess.PIPE, text=True)
        # It says so when it listens.
        if not self._bus.stdout.readline():
            raise RuntimeError("dbus-daemon did not start")

    def kill_bus(self) -> None:
        self._bus.kill()
        self._bus.wait()

    def _start_session(self) -> None:
        self._start_window_manager()
        if self._compositor:
            self.background(["picom", "--backend", "xrender"])
            wait_until(self._has_compositor, "the compositor")

    def _start_x_server(self) -> None:
        read_end, write_end = os.pipe()
        # Without -noreset the server starts anew whenever its last client goes, which can be a probe
        # that asked for the window manager just before that one came.
        command = ["Xvfb", "-displayfd", str(write_end), "-nolisten", "tcp", "-noreset"]
        command += ["-screen", "0", f"{self._size}x24"]
        server = subprocess.Popen(command, pass_fds=[write_end], stderr=subprocess.DEVNULL)
        self.x_server = server.pid
        os.close(write_end)
        self._stack.callback(_end, server)
        with os.fdopen(read_end) as answer:
            number = answer.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        self.display = f":{number}"

    def background(self, command: list[str], **options) -> subprocess.Popen:
        """Starts what ends with the desktop."""
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        process = subprocess.Popen(command, **({"env": self.environment} | quiet | options))
        self._stack.callback(_end, process)
        return process

    def _start_window_manager(self) -> None:
        self._window_manager = self.background(["openbox"])
        wait_until(self._has_window_manager, "the window manager")

    def replace_window_manager(self) -> None:
        """Has the window manager crash, and another one start."""
        self._window_manager.kill()
        self._window_manager.wait()
        wait_until(lambda: not self._has_window_manager(), "the end of the window manager")
        self._start_window_manager()

    def _has_window_manager(self) -> bool:
        """A crashed one leaves its mark on the root window, but not the window that it names."""
        mark = self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK").rpartition(" ")[2].strip()
        return mark.startswith("0x") and mark in self.run("xprop", "-id", mark, "_NET_SUPPORTING_WM_CHECK")

    def _has_compositor(self) -> bool:
        return "picom" in self.run("xwininfo", "-root", "-tree")

    def run(self, *command: str) -> str:
        """What a tool prints on this desktop."""
        done = subprocess.run(
            command, env=self.environment, check=False, capture_output=True, text=True
        )
        return done.stdout

    def windows(self, title: str) -> list[str]:
        """The ids of those that can be seen."""
        return self.run("xdotool", "search", "--onlyvisible", "--name", f"^{title}$").split()

    def window(self, title: str) -> str:
        return wait_until(lambda: self.windows(title), f"the window {title}")[0]

    def close(self, window: str) -> None:
        """As by the button of its frame."""
        self.run("wmctrl", "-i", "-c", window)

    def frame(self, window: str) -> tuple[int, int, int, int]:
        """x, y, width and height of a window on the screen."""
        text = self.run("xwininfo", "-id", window)
        labels = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        return tuple(int(re.search(f"{label}: +(-?\\d+)", text).group(1)) for label in labels)

    def screenshot(self) -> Image.Image:
        return ImageGrab.grab(xdisplay=self.display).convert("RGB")

    def pixel(self, x: float, y: float) -> tuple[int, int, int]:
        return self.screenshot().getpixel((int(x), int(y)))

    # Input as from a mouse: every one of these makes the events that a real one would.

    def _mouse(self, *arguments: str) -> str:
        environment = self.environment | {"DISPLAY": self.display}
        return subprocess.run(
            ["xdotool", *arguments], env=environment, check=True, capture_output=True, text=True
        ).stdout

    def pointer(self) -> tuple[int, int]:
        values = dict(v.split("=") for v in self._mouse("getmouselocation", "--shell").split())
        return int(values["X"]), int(values["Y"])

    def point(self, x: float, y: float) -> None:
        now = self.pointer()
        self._mouse("mousemove_relative", "--", str(int(x) - now[0]), str(int(y) - now[1]))

    def button(self, action: str, *arguments: str) -> None:
        """`action` is "mousedown", "mouseup" or "click"."""
        self._mouse(action, *arguments)

    def key(self, *keys: str | int) -> None:
        """Pressed one after the other; each is a key symbol's name or the X server's code of a key."""
        for key in keys:
            self._mouse("key", str(key))

    def hold(self, key: int):
        """A context manager in which the key is held down."""
        self._mouse("keydown", str(key))
        stack = contextlib.ExitStack()
        stack.callback(self._mouse, "keyup", str(key))
        return stack

    def click(self, x: float, y: float) -> None:
        self.point(x, y)
        self.button("click", "1")

    def double_click(self, x: float, y: float) -> None:
        self.point(x, y)
        self.button("click", "--repeat", "2", "--delay", "50", "1")

    def drag(self, x: float, y: float, dx: int, dy: int, steps: int = 20) -> None:
        """From a place by a distance, in steps small enough for a program to follow."""
        self.point(x, y)
        self.button("mousedown", "1")
        for step in range(1, steps + 1):
            self.point(x + dx * step // steps, y + dy * step // steps)
        self.button("mouseup", "1")


class WaylandDesktop(Desktop):
    """A Wayland session in which programs run through XWayland. Input and screenshots are those of the
    X server around it, to which the whole session is one window as large as the screen."""

    def _start_session(self) -> None:
        width, height = self._size.split("x")
        log = self.folder / "weston.log"
        self.background([
            "weston", "--backend=x11-backend.so", "--xwayland", "--use-pixman", "--no-config",
            "--idle-time=0", f"--width={width}", f"--height={height}", "--socket=session", f"--log={log}",
        ])
        said = r"xserver listening on display (:\d+)"
        listening = wait_until(
            lambda: log.exists() and re.search(said, log.read_text(encoding="utf-8")), "XWayland")
        self.environment |= {"WAYLAND_DISPLAY": "session", "DISPLAY": listening.group(1)}
        # It starts with its first client, and the desktop is there when it has been painted.
        wait_until(self._has_window_manager, "XWayland's window manager")
        wait_until(lambda: max(self.pixel(600, 300)) > 0, "the background")
        # The session counts how far its pointer is moved, and begins in its own corner.
        self._mouse("mousemove_relative", "--", f"-{width}", f"-{height}")


class Program:
    """The built program on a desktop. Ends it, and all it has started, when it goes out of use."""

    def __init__(self, desktop: Desktop, binary: str, site: str = "", arguments=(), **variables: str):
        self.desktop = desktop
        self._timeline = desktop.folder / "timeline"
        self._timeline.unlink(missing_ok=True)
        self._log = open(desktop.folder / "program.log", "w", encoding="utf-8")
        self.environment = desktop.environment | {
            "ORVANE_VIDEO_SITE": site,
            "ORVANE_TIMELINE": str(self._timeline),
        }
        self.environment |= OFFLINE | variables
        self.started = time.monotonic()
        self.process = subprocess.Popen(
            [binary, *arguments], env=self.environment, stdin=subprocess.PIPE,
            stdout=self._log, stderr=subprocess.STDOUT, text=True,
        )
        self._lines_told = 0

    def __enter__(self) -> "Program":
        return self

    def __exit__(self, *_) -> None:
        _end(self.process)
        self._log.close()

    def tell(self, line: str) -> str:
        """Has the window probe do what the line says; gives its answer."""
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        self._lines_told += 1

        def answers():
            lines = [x for x in self.log().splitlines() if x.startswith("done ")]
            return lines if len(lines) == self._lines_told else None

        return wait_until(answers, f"an answer to {line}")[-1].removeprefix("done ")

    def log(self) -> str:
        return (self.desktop.folder / "program.log").read_text(encoding="utf-8")

    def _marks(self) -> list[list[str]]:
        """Milestone, milliseconds of the monotonic clock, and the detail where there is one."""
        if not self._timeline.exists():
            return []
        text = self._timeline.read_text(encoding="utf-8")
        return [line.split(maxsplit=2) for line in text.splitlines()]

    def milestones(self) -> list[tuple[str, float]]:
        """Each with the milliseconds since the program was started."""
        return [(mark[0], float(mark[1]) - self.started * 1000) for mark in self._marks()]

    def said(self, milestone: str) -> str:
        """The detail of the last such milestone."""
        return [" ".join(mark[2:]) for mark in self._marks() if mark[0] == milestone][-1]

    def count(self, milestone: str) -> int:
        return sum(1 for name, _ in self.milestones() if name == milestone)

    def wait_for(self, milestone: str, count: int = 1, deadline: float = DEADLINE) -> float:
        """When the milestone was reached for the given time, in milliseconds since the start."""

        def reached():
            if self.process.poll() is not None:
                raise AssertionError(f"the program ended with {self.process.returncode}")
            return self.count(milestone) >= count

        wait_until(reached, f"{milestone} x {count}; so far: {self.milestones()}", deadline)
        return [at for name, at in self.milestones() if name == milestone][count - 1]

    def windows(self) -> list[str]:
        return self.desktop.windows("Orvane")

    def is_shown(self) -> bool:
        return bool(self.windows())

    def window(self) -> str:
        """The id of the player window."""
        return self.desktop.window("Orvane")

    def frame(self) -> tuple[int, int, int, int]:
        """That of the player window."""
        return self.desktop.frame(self.window())

    def picture(self) -> Image.Image:
        x, y, width, height = self.frame()
        return self.desktop.screenshot().crop((x, y, x + width, y + height))

    def preferences(self) -> dict:
        path = pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "orvane/preferences.json"
        return json.loads(path.read_text(encoding="utf-8")) if path.exists() else {}

    def wait_for_preferences(self, **wanted) -> None:
        """The program writes them in its own time."""
        for key, value in wanted.items():
            wait_until(lambda k=key, v=value: self.preferences().get(k) == v, f"{key}: {value}")

    def children(self) -> list[str]:
        """The command lines of everything the program has started, directly or not."""
        return [command for _, command in descendants(self.process.pid)]

    def quit(self, deadline: float = 10) -> int:
        """Asks it to end as a session manager would; gives the exit code."""
        self.process.send_signal(signal.SIGTERM)
        return self.process.wait(deadline)


class Backdrop:
    """Some other program's window, as large as the screen, which tells what is clicked on it."""

    def __init__(self, desktop: Desktop, colour: tuple[int, int, int]):
        self._desktop = desktop
        self._said = desktop.folder / "backdrop"
        with open(self._said, "w", encoding="utf-8") as said:
            probe = pathlib.Path(os.environ["ORVANE_BUILD"]) / "backdrop_probe"
            command = [str(probe), "#%02x%02x%02x" % colour]
            self._process = desktop.background(command, stdout=said)
        self._window = desktop.window("Backdrop")

    def __enter__(self) -> "Backdrop":
        return self

    def __exit__(self, *_) -> None:
        _end(self._process)

    def raise_(self) -> None:
        self._desktop.run("xdotool", "windowactivate", "--sync", self._window, "windowraise", self._window)

    def _heard(self, what: str) -> list[tuple[int, ...]]:
        lines = [line.split() for line in self._said.read_text(encoding="utf-8").splitlines()]
        return [tuple(int(word) for word in words[1:]) for words in lines if words[0] == what]

    def clicks(self) -> list[tuple[int, ...]]:
        return self._heard("click")

    def keys(self) -> list[int]:
        """The codes of the keys, again for each repetition."""
        return [code for code, in self._heard("key")]


def descendants(pid: int) -> list[tuple[int, str]]:
    """Process ids and command lines of all that `pid` has started and that still lives."""
    table = subprocess.run(
        ["ps", "-e", "-o", "pid=,ppid=,args="], check=True, capture_output=True, text=True
    ).stdout
    rows = [line.split(None, 2) for line in table.splitlines()]
    found: list[tuple[int, str]] = []
    parents = {pid}
    while parents:
        level = [(int(r[0]), r[2]) for r in rows if int(r[1]) in parents and len(r) == 3]
        found += level
        parents = {child for child, _ in level}
    return found


def moves(first: Image.Image, second: Image.Image) -> bool:
    """Whether two pictures differ by more than noise."""
    difference = ImageStat.Stat(ImageChops.difference(first, second))
    return max(difference.mean) > 0.5


def wait_for_motion(program: Program, box=None, deadline: float = DEADLINE) -> Image.Image:
    """Waits until the picture (or the part `box` of it) has changed; gives the changed one."""
    first = program.picture().crop(box) if box else program.picture()

    def changed():
        now = program.picture()
        return now if moves(first, now.crop(box) if box else now) else None

    return wait_until(changed, "a moving picture", deadline)


def _end(process: subprocess.Popen) -> None:
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(5)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
    for stream in (process.stdin, process.stdout):
        if stream:
            stream.close()
