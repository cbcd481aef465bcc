# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults of the desktop while a channel plays."""

import subprocess

from fixture import Fixture
from outcome import quit_cleanly
from rows import Row
from tools.tray import find_icon, start_tint2
from tools.waiting import wait_until

PULSE = ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
         "--load=module-native-protocol-unix", "--load=module-null-sink"]


def end(process: subprocess.Popen) -> None:
    process.kill()
    process.wait()


def panel(fixture: Fixture) -> str:
    def has_icon() -> bool:
        return find_icon(fixture.desktop) is not None

    first = start_tint2(fixture.desktop)
    fixture.start()
    fixture.plays()
    wait_until(has_icon, "the icon")
    end(first)
    wait_until(lambda: not has_icon(), "the end of the icon")
    fixture.plays()
    start_tint2(fixture.desktop)
    wait_until(has_icon, "the icon again")
    fixture.plays()
    return "keeps playing; the icon comes back with the panel"


def window_manager(fixture: Fixture) -> str:
    program = fixture.start()
    fixture.plays()
    frame = program.frame()
    fixture.desktop.replace_window_manager()

    def is_above() -> bool:
        return "_NET_WM_STATE_ABOVE" in fixture.desktop.run("xprop", "-id", program.window(), "_NET_WM_STATE")

    wait_until(is_above, "a window above the others")
    wait_until(lambda: program.frame() == frame, lambda: f"the window at {frame}, not at {program.frame()}")
    fixture.plays()
    x, y, width, height = frame
    dragged = (x - 100, y - 50, width, height)
    fixture.desktop.drag(x + width // 2, y + height // 2 - 40, -100, -50, lambda: program.frame() == dragged,
                        lambda: f"the window dragged to {dragged}, not to {program.frame()}")
    fixture.plays()
    return "keeps playing; under the next one the window is at its place, above others, and can be dragged"


def compositor(fixture: Fixture) -> str:
    first = fixture.desktop.start_compositor()
    fixture.start()
    fixture.plays()
    end(first)
    fixture.plays()
    fixture.desktop.start_compositor()
    fixture.plays()
    return "keeps playing without it and with the next one"


def session_bus(fixture: Fixture) -> str:
    fixture.start()
    fixture.plays()
    fixture.desktop.kill_bus()
    fixture.plays()
    fixture.desktop.start_bus()
    wait_until(lambda: fixture.ask("status") == "Playing", "an answer on the next bus")
    fixture.plays()
    return "keeps playing; can be controlled over the next bus"


def audio_server(fixture: Fixture) -> str:
    def start():
        server = fixture.desktop.background(PULSE)
        wait_until(lambda: fixture.desktop.run("pactl", "list", "short", "sinks"), "the audio server")
        return server

    def is_heard() -> bool:
        return bool(fixture.desktop.run("pactl", "list", "short", "sink-inputs").strip())

    server = start()
    fixture.start()
    fixture.plays()
    wait_until(is_heard, "the sound")
    end(server)
    fixture.plays()
    server = start()
    wait_until(is_heard, "the sound again")
    fixture.plays()
    end(server)
    fixture.other_channel_plays()
    start()
    wait_until(is_heard, "the sound of the other channel")
    fixture.plays("AlHadath")
    return "keeps playing without sound, another channel too; the sound comes back with the next server"


# The screen

def resize_screen(fixture: Fixture, width: int, height: int) -> None:
    mode = f"{width}x{height}-now"
    # Xvfb ignores the timings of a mode.
    for command in (["--newmode", mode, "0", str(width), "0", "0", "0", str(height), "0", "0", "0"],
                    ["--addmode", "screen", mode], ["--output", "screen", "--mode", mode]):
        fixture.desktop.run("xrandr", *command)
    size = f"{width}x{height}+0+0"
    wait_until(lambda: size in fixture.desktop.run("xrandr"), f"a screen of {size}")


def is_inside(fixture: Fixture, width: int, height: int) -> bool:
    x, y, w, h = fixture.program.frame()
    return x >= 0 and y >= 0 and x + w <= width and y + h <= height


def resolution(fixture: Fixture) -> str:
    program = fixture.start()
    fixture.plays()
    for size in ((800, 600), (1280, 720), (640, 480)):
        resize_screen(fixture, *size)
        wait_until(lambda size=size: is_inside(fixture, *size), f"the window inside {size}")
        fixture.plays()
    return "keeps playing; the whole window stays on the screen"


def unplugged(fixture: Fixture) -> str:
    program = fixture.start()
    fixture.plays()
    frame = program.frame()
    assert frame[0] > 1280, f"the window is on the left: {frame}"
    resize_screen(fixture, 1280, 720)
    wait_until(lambda: is_inside(fixture, 1280, 720), "the window on the remaining screen")
    fixture.plays()
    quit_cleanly(fixture.program)
    # A stored frame on the right half: the next start must show it on the remaining screen.
    stored = fixture.preferences.read_text(encoding="utf-8")
    fixture.preferences.write_text(
        stored.replace(program.preferences()["windowFrame"], "{{2000, 300}, {480, 314}}"), encoding="utf-8")
    fixture.start()
    fixture.plays()
    assert is_inside(fixture, 1280, 720), fixture.program.frame()
    return "the window moves to the remaining screen, also at the next start; keeps playing"


ROWS = [
    Row("desktop.panel", "the panel with the tray is killed, and comes back", panel),
    Row("desktop.window-manager", "the window manager is killed, and comes back", window_manager),
    Row("desktop.compositor", "the compositor is killed, and comes back", compositor),
    Row("desktop.session-bus", "the session bus is killed, and comes back", session_bus),
    Row("desktop.audio", "the audio server is killed, and comes back", audio_server),
    Row("desktop.resolution", "the screen becomes smaller, larger, and smaller again", resolution),
    Row("desktop.unplugged", "the half of the screen that shows the window is unplugged", unplugged,
        fixture={"size": "2560x720"}),
]
