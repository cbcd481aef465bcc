# SPDX-License-Identifier: GPL-3.0-or-later
"""Random input and all keys at once, through XTEST on one connection to the X server."""

import json
import random
import time

from Xlib import X, XK, display, error
from Xlib.ext import xtest

from fixture import Fixture
from outcome import BUILD, check_no_alarm, quit_cleanly
from rows import Row
from tools.waiting import wait_until
from updates import UpdateServer

SEED = 20240229
EVENTS = 10_000
UPDATER_EVENTS = 1_000
KEYS_TIME = 10.0
# Events between two checks that the program still answers on the bus.
BURST = 25
SCREEN = (1280, 720)
FIRST_KEY, LAST_KEY = 9, 255
# The key that quits the program, and the locks, which would leave other keys without effect.
EXCLUDED_KEYS = (XK.XK_q, XK.XK_Caps_Lock, XK.XK_Num_Lock)


class Input:
    """A keyboard and a mouse, and the visible windows of the program."""

    def __init__(self, fixture: Fixture, program: str = "orvane"):
        self._program = program
        self._display = display.Display(fixture.desktop.display)
        self._root = self._display.screen().root
        excluded = {self._display.keysym_to_keycode(symbol) for symbol in EXCLUDED_KEYS}
        self.keys = [code for code in range(FIRST_KEY, LAST_KEY + 1) if code not in excluded]
        modifiers = {code for row in self._display.get_modifier_mapping() for code in row if code}
        self.plain_keys = [code for code in self.keys if code not in modifiers]

    def __enter__(self) -> "Input":
        return self

    def __exit__(self, *_) -> None:
        self._display.close()

    def send(self, kind: int, detail: int = 0, x: int = 0, y: int = 0) -> None:
        xtest.fake_input(self._display, kind, detail, x=x, y=y)

    def sync(self) -> None:
        self._display.sync()

    def release_all(self) -> None:
        for code in self.keys:
            self.send(X.KeyRelease, code)
        for button in (1, 2, 3):
            self.send(X.ButtonRelease, button)
        self.sync()

    def _shown(self, window, found: list) -> None:
        for child in window.query_tree().children:
            try:
                if child.get_attributes().map_state != X.IsViewable:
                    continue
                name = child.get_wm_class()
                if name and name[0].lower() == self._program:
                    found.append(child)
                else:
                    self._shown(child, found)
            except error.XError:
                pass  # The window was just closed.

    def windows(self) -> list[tuple[int, int, int, int]]:
        """Returns the frames of the visible windows of the program, menus included."""
        found: list = []
        self._shown(self._root, found)
        frames = []
        for window in found:
            try:
                size = window.get_geometry()
                place = window.translate_coords(self._root, 0, 0)
                frames.append((-place.x, -place.y, size.width, size.height))
            except error.XError:
                pass
        return frames


def answers(fixture: Fixture) -> bool:
    return fixture.ask("status") in ("Playing", "Paused", "Stopped")


def plays_afterwards(fixture: Fixture) -> str:
    """Restarts with a channel, which must play whatever settings the input has changed."""
    quit_cleanly(fixture.program)
    fixture.keeps_settings()
    # The input may have dragged the window off the screen or made it transparent, which is allowed.
    stored = fixture.program.preferences() | {"ghostModeEnabled": False, "windowOpacity": 1}
    stored.pop("windowFrame", None)
    fixture.preferences.write_text(json.dumps(stored), encoding="utf-8")
    fixture.start("--play", "alarabiya")
    return f"the next start plays after {fixture.plays():.0f} s"


def all_keys(fixture: Fixture) -> str:
    program = fixture.start()
    fixture.plays()
    chance = random.Random(SEED)
    rounds = 0
    with Input(fixture) as keys:
        end = time.monotonic() + KEYS_TIME
        while time.monotonic() < end:
            # Together with modifiers most keys have no effect, so every other round is without.
            chosen = list(keys.keys if rounds % 2 else keys.plain_keys)
            chance.shuffle(chosen)
            for code in chosen:
                keys.send(X.KeyPress, code)
            keys.sync()
            assert program.process.poll() is None, f"the program ended with {program.process.returncode}"
            keys.release_all()
            rounds += 1
    wait_until(lambda: answers(fixture), "an answer")
    return f"{rounds} times all keys; answers; {plays_afterwards(fixture)}"


class Monkey:
    """Sends random input to the visible windows of the program."""

    def __init__(self, fixture: Fixture, devices: Input):
        self._fixture = fixture
        self._devices = devices
        self._chance = random.Random(SEED)
        self.starts = 0
        self.events = 0
        # Of the windows and menus.
        self.sizes: set[tuple[int, int]] = set()

    def start(self) -> None:
        self._devices.release_all()
        self._fixture.start("--settings")
        self._fixture.program.wait_for("window-shown")
        wait_until(lambda: answers(self._fixture), "an answer")
        self.starts += 1

    def has_quit(self) -> bool:
        """Whether the program has ended: the input may have quit it, which must end cleanly."""
        process = self._fixture.program.process
        if process.poll() is None:
            return False
        assert process.returncode == 0, f"the program ended with {process.returncode}"
        check_no_alarm(self._fixture.program)
        self._fixture.keeps_settings()
        return True

    def show_more(self) -> None:
        """Opens a window that random clicks rarely open, and leaves full screen, which would cover it."""
        self._devices.release_all()
        if SCREEN in (frame[2:] for frame in self._devices.windows()):
            self._fixture.desktop.key("Escape", "f")
        option = self._chance.choice(["--settings", "--next", "--toggle-ghost", "--add=@AlHadath", "--play=alarabiya"])
        program = self._fixture.program
        sender = self._fixture.desktop.background([program.process.args[0], *option.split("=", 1)],
                                                 env=program.environment)
        wait_until(lambda: sender.poll() is not None or program.process.poll() is not None,
                   "the command to be accepted")
        # If the last click has quit the program, the sender has become the running copy.
        sender.terminate()
        sender.wait()

    def burst(self) -> None:
        frames = self._devices.windows()
        if not frames:
            self.show_more()
            return
        for _ in range(BURST):
            frame = self._chance.choice(frames)
            self.sizes.add(frame[2:])
            self._act(frame)
            self.events += 1
        self._devices.release_all()

    def _act(self, frame: tuple[int, int, int, int]) -> None:
        left, top, width, height = frame
        x, y = left + self._chance.randrange(max(width, 1)), top + self._chance.randrange(max(height, 1))
        send = self._devices.send
        send(X.MotionNotify, x=max(x, 0), y=max(y, 0))
        action = self._chance.random()
        if action < 0.3:
            code = self._chance.choice(self._devices.plain_keys)
            send(X.KeyPress, code)
            send(X.KeyRelease, code)
            return
        button = self._chance.choice([1, 1, 1, 1, 2, 3, 3, 4, 5])
        send(X.ButtonPress, button)
        if action < 0.5:
            for step in range(1, 5):
                send(X.MotionNotify, x=max(x + step * self._chance.randrange(-20, 20), 0),
                     y=max(y + step * self._chance.randrange(-20, 20), 0))
        send(X.ButtonRelease, button)


def random_input(fixture: Fixture) -> str:
    with Input(fixture) as devices:
        monkey = Monkey(fixture, devices)
        monkey.start()
        bursts = 0
        while monkey.events < EVENTS:
            bursts += 1
            if bursts % 20 == 0:
                monkey.show_more()
            monkey.burst()
            if not answers(fixture):
                wait_until(lambda: answers(fixture) or monkey.has_quit(), "an answer, or a clean exit")
            if monkey.has_quit():
                monkey.start()
        devices.release_all()
    return (f"answers after each {BURST}; {monkey.starts} start(s); windows and menus of "
            f"{len(monkey.sizes)} sizes; {plays_afterwards(fixture)}")


def random_input_to_the_updater(fixture: Fixture) -> str:
    """The updater's window on its own: a build without a feed does not show it."""
    # Otherwise the wheel beside the window switches to another desktop, where the window is not.
    fixture.desktop.run("wmctrl", "-n", "1")
    server = fixture.enter(UpdateServer(fixture.folder))
    server.allowed.set()
    program = fixture.run(f"{BUILD}/updater_probe", f"{server.origin}/appcast.xml", server.key, server.certificate)

    def answer_count() -> int:
        return len(program.log().splitlines())

    def opens() -> bool:
        """Asks once more, since the last input may only now have closed it."""
        before = answer_count()
        program.process.stdin.write("check\n")
        program.process.stdin.flush()
        wait_until(lambda: answer_count() > before, "an answer")
        return bool(devices.windows())

    with Input(fixture, "updater_probe") as devices:
        monkey = Monkey(fixture, devices)
        wait_until(devices.windows, "its window")
        while monkey.events < UPDATER_EVENTS:
            if devices.windows():
                monkey.burst()
            assert program.process.poll() is None, f"the program ended with {program.process.returncode}"
            wait_until(opens, "the window again")
    return f"opens again each time, with {len(monkey.sizes)} sizes"


ROWS = [
    Row("input.all-keys", "all keys at once, repeatedly for 10 s", all_keys),
    Row("input.random", "10000 random clicks, drags and keys on all windows", random_input),
    Row("input.random-update", "1000 of them on the updater's window", random_input_to_the_updater),
]
