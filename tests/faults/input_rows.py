# SPDX-License-Identifier: GPL-3.0-or-later
"""Input that no person makes. It comes through XTEST from one connection to the X server."""

import json
import random
import time

from Xlib import X, XK, display, error
from Xlib.ext import xtest

from desktop import wait_until
from ground import Ground
from rows import Row

SEED = 20240229
EVENTS = 10_000
KEYS_TIME = 10.0
# So many events are sent before the program has to answer on the bus.
BURST = 25
FIRST_KEY, LAST_KEY = 9, 255
# The keys that end the program, the server or its session, and those that leave the other keys without
# effect for the rest of the time.
LEFT_OUT = (XK.XK_q, XK.XK_Caps_Lock, XK.XK_Num_Lock)


class Input:
    """Keys and a mouse, with the windows that the program shows."""

    def __init__(self, ground: Ground):
        self._display = display.Display(ground.desktop.display)
        self._root = self._display.screen().root
        left_out = {self._display.keysym_to_keycode(symbol) for symbol in LEFT_OUT}
        self.keys = [code for code in range(FIRST_KEY, LAST_KEY + 1) if code not in left_out]
        modifiers = {code for row in self._display.get_modifier_mapping() for code in row if code}
        self.plain_keys = [code for code in self.keys if code not in modifiers]

    def __enter__(self) -> "Input":
        return self

    def __exit__(self, *_) -> None:
        self._display.close()

    def send(self, kind: int, detail: int = 0, x: int = 0, y: int = 0) -> None:
        xtest.fake_input(self._display, kind, detail, x=x, y=y)

    def arrive(self) -> None:
        self._display.sync()

    def release_all(self) -> None:
        for code in self.keys:
            self.send(X.KeyRelease, code)
        for button in (1, 2, 3):
            self.send(X.ButtonRelease, button)
        self.arrive()

    def _shown(self, window, found: list) -> None:
        for child in window.query_tree().children:
            try:
                if child.get_attributes().map_state != X.IsViewable:
                    continue
                name = child.get_wm_class()
                if name and name[1].lower() == "orvane":
                    found.append(child)
                else:
                    self._shown(child, found)
            except error.XError:
                pass  # It has just gone.

    def windows(self) -> list[tuple[int, int, int, int]]:
        """Where those of the program are that can be seen, menus included."""
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


def answers(ground: Ground) -> bool:
    return ground.ask("status") in ("Playing", "Paused", "Stopped")


def plays_afterwards(ground: Ground) -> str:
    """Whatever has been chosen, a channel that is asked for plays."""
    ground.quits()
    ground.keeps_settings()
    # A window may have been dragged to where it can hardly be seen, or be a ghost: that was a choice too.
    stored = ground.program.preferences() | {"ghostModeEnabled": False, "windowOpacity": 1}
    stored.pop("windowFrame", None)
    ground.preferences.write_text(json.dumps(stored), encoding="utf-8")
    ground.start("--play", "alarabiya")
    return f"the next start plays after {ground.plays():.0f} s"


def all_keys(ground: Ground) -> str:
    program = ground.start()
    ground.plays()
    chance = random.Random(SEED)
    rounds = 0
    with Input(ground) as keys:
        end = time.monotonic() + KEYS_TIME
        while time.monotonic() < end:
            # With the modifiers among them, most keys mean nothing.
            chosen = list(keys.keys if rounds % 2 else keys.plain_keys)
            chance.shuffle(chosen)
            for code in chosen:
                keys.send(X.KeyPress, code)
            keys.arrive()
            assert program.process.poll() is None, f"the program ended with {program.process.returncode}"
            keys.release_all()
            rounds += 1
    wait_until(lambda: answers(ground), "an answer")
    return f"{rounds} times all keys; answers; {plays_afterwards(ground)}"


class Monkey:
    """Does what comes to its mind, to whatever window of the program it sees."""

    def __init__(self, ground: Ground, hand: Input):
        self._ground = ground
        self._hand = hand
        self._chance = random.Random(SEED)
        self.starts = 0
        self.seen: set[tuple[int, int]] = set()

    def start(self) -> None:
        self._hand.release_all()
        # The last one may have been told to go for good.
        self._ground.start("--settings", ORVANE_APPCAST="https://127.0.0.1:1/feed")
        self._ground.program.wait_for("window-shown")
        wait_until(lambda: answers(self._ground), "an answer")
        self.starts += 1

    def has_gone(self) -> bool:
        """It may have chosen to quit, which it must do well."""
        process = self._ground.program.process
        if process.poll() is None:
            return False
        assert process.returncode == 0, f"the program ended with {process.returncode}"
        self._ground.raises_no_alarm()
        self._ground.keeps_settings()
        return True

    def show_more(self) -> None:
        """One of the windows that only few clicks lead to."""
        self._hand.release_all()
        self._ground.desktop.run("xdotool", "key", "Escape")
        option = self._chance.choice(["--settings", "--next", "--toggle-ghost", "--add=@AlHadath", "--play=alarabiya"])
        self._ground.desktop.run("env", *(f"{k}={v}" for k, v in self._ground.program.environment.items()),
                                 self._ground.program.process.args[0], *option.split("=", 1))

    def burst(self) -> None:
        frames = self._hand.windows()
        if not frames:
            self.show_more()
            return
        for _ in range(BURST):
            frame = self._chance.choice(frames)
            self.seen.add(frame[2:])
            self._act(frame)
        self._hand.release_all()

    def _act(self, frame: tuple[int, int, int, int]) -> None:
        left, top, width, height = frame
        x, y = left + self._chance.randrange(max(width, 1)), top + self._chance.randrange(max(height, 1))
        send = self._hand.send
        send(X.MotionNotify, x=max(x, 0), y=max(y, 0))
        action = self._chance.random()
        if action < 0.3:
            code = self._chance.choice(self._hand.plain_keys)
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


def random_input(ground: Ground) -> str:
    with Input(ground) as hand:
        monkey = Monkey(ground, hand)
        monkey.start()
        for burst in range(EVENTS // BURST):
            if burst % 20 == 19:
                monkey.show_more()
            monkey.burst()
            if not answers(ground):
                wait_until(lambda: answers(ground) or monkey.has_gone(), "an answer, or a good end")
            if monkey.has_gone():
                monkey.start()
        hand.release_all()
    return (f"answers after each {BURST}; {monkey.starts} starts, as some clicks quit; windows and menus of "
            f"{len(monkey.seen)} sizes; {plays_afterwards(ground)}")


ROWS = [
    Row("input.all-keys", "all keys at once, again and again for 10 s", all_keys),
    Row("input.random", "10000 random clicks, drags and keys on all windows", random_input),
]
