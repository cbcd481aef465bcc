# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults of the desktop while a channel plays."""

import subprocess

from ground import Ground
from outcome import quit_cleanly
from rows import Row
from tools.tray import find_icon, start_tint2
from tools.waiting import wait_until

PULSE = ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
         "--load=module-native-protocol-unix", "--load=module-null-sink"]


def end(process: subprocess.Popen) -> None:
    process.kill()
    process.wait()


def panel(ground: Ground) -> str:
    def has_icon() -> bool:
        return find_icon(ground.desktop) is not None

    first = start_tint2(ground.desktop)
    ground.start()
    ground.plays()
    wait_until(has_icon, "the icon")
    end(first)
    wait_until(lambda: not has_icon(), "the end of the icon")
    ground.plays()
    start_tint2(ground.desktop)
    wait_until(has_icon, "the icon again")
    ground.plays()
    return "plays on; the icon comes back with the panel"


def window_manager(ground: Ground) -> str:
    program = ground.start()
    ground.plays()
    frame = program.frame()
    ground.desktop.replace_window_manager()

    def is_above() -> bool:
        return "_NET_WM_STATE_ABOVE" in ground.desktop.run("xprop", "-id", program.window(), "_NET_WM_STATE")

    wait_until(is_above, "a window above the others")
    wait_until(lambda: program.frame() == frame, lambda: f"the window at {frame}, not at {program.frame()}")
    ground.plays()
    x, y, width, height = frame
    dragged = (x - 100, y - 50, width, height)
    ground.desktop.drag(x + width // 2, y + height // 2 - 40, -100, -50, lambda: program.frame() == dragged,
                        lambda: f"the window dragged to {dragged}, not to {program.frame()}")
    ground.plays()
    return "plays on, in its place and above others under the next one, and can be dragged"


def compositor(ground: Ground) -> str:
    first = ground.desktop.start_compositor()
    ground.start()
    ground.plays()
    end(first)
    ground.plays()
    ground.desktop.start_compositor()
    ground.plays()
    return "plays on without it, and with the next one"


def session_bus(ground: Ground) -> str:
    ground.start()
    ground.plays()
    ground.desktop.kill_bus()
    ground.plays()
    ground.desktop.start_bus()
    wait_until(lambda: ground.ask("status") == "Playing", "an answer on the next bus")
    ground.plays()
    return "plays on; can be driven from outside on the next one"


def audio_server(ground: Ground) -> str:
    def start():
        server = ground.desktop.background(PULSE)
        wait_until(lambda: ground.desktop.run("pactl", "list", "short", "sinks"), "the audio server")
        return server

    def is_heard() -> bool:
        return bool(ground.desktop.run("pactl", "list", "short", "sink-inputs").strip())

    server = start()
    ground.start()
    ground.plays()
    wait_until(is_heard, "the sound")
    end(server)
    ground.plays()
    server = start()
    wait_until(is_heard, "the sound again")
    ground.plays()
    end(server)
    ground.other_channel_plays()
    start()
    wait_until(is_heard, "the sound of the other channel")
    ground.plays("AlHadath")
    return "plays on without sound, another channel too; the sound comes back with the next server"


# The screen

def resize_screen(ground: Ground, width: int, height: int) -> None:
    mode = f"{width}x{height}-now"
    # Xvfb ignores the timings of a mode.
    for command in (["--newmode", mode, "0", str(width), "0", "0", "0", str(height), "0", "0", "0"],
                    ["--addmode", "screen", mode], ["--output", "screen", "--mode", mode]):
        ground.desktop.run("xrandr", *command)
    size = f"{width}x{height}+0+0"
    wait_until(lambda: size in ground.desktop.run("xrandr"), f"a screen of {size}")


def is_inside(ground: Ground, width: int, height: int) -> bool:
    x, y, w, h = ground.program.frame()
    return x >= 0 and y >= 0 and x + w <= width and y + h <= height


def resolution(ground: Ground) -> str:
    program = ground.start()
    ground.plays()
    for size in ((800, 600), (1280, 720), (640, 480)):
        resize_screen(ground, *size)
        wait_until(lambda size=size: is_inside(ground, *size), f"the window inside {size}")
        ground.plays()
    return "plays on; the whole window stays on the screen"


def unplugged(ground: Ground) -> str:
    program = ground.start()
    ground.plays()
    frame = program.frame()
    assert frame[0] > 1280, f"the window is on the left: {frame}"
    resize_screen(ground, 1280, 720)
    wait_until(lambda: is_inside(ground, 1280, 720), "the window on what is left")
    ground.plays()
    quit_cleanly(ground.program)
    # A stored frame on the right half: the next start must be on the screen that is left.
    stored = ground.preferences.read_text(encoding="utf-8")
    ground.preferences.write_text(
        stored.replace(program.preferences()["windowFrame"], "{{2000, 300}, {480, 314}}"), encoding="utf-8")
    ground.start()
    ground.plays()
    assert is_inside(ground, 1280, 720), ground.program.frame()
    return "the window comes to what is left, and so does that of the next start; plays on"


ROWS = [
    Row("desktop.panel", "the panel with the tray is killed, and comes back", panel),
    Row("desktop.window-manager", "the window manager is killed, and comes back", window_manager),
    Row("desktop.compositor", "the compositor is killed, and comes back", compositor),
    Row("desktop.session-bus", "the session bus is killed, and comes back", session_bus),
    Row("desktop.audio", "the audio server is killed, and comes back", audio_server),
    Row("desktop.resolution", "the screen gets smaller, larger, and small", resolution),
    Row("desktop.unplugged", "the right half of the screen goes, and the window with it", unplugged,
        ground={"size": "2560x720"}),
]
