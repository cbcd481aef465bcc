# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults of the preferences file."""

import json
import os
import signal
import subprocess
import time

import dbus
import dbus.bus

from ground import KEEPSAKE, Ground
from outcome import BUILD, quit_cleanly
from rows import Row
from tools.waiting import wait_until

LARGE = 50_000_000
# Seconds until an answer to a panel while the file is large.
ANSWER_LIMIT = 5.0
PLAYER = ("org.mpris.MediaPlayer2.orvane", "/org/mpris/MediaPlayer2")
WRITES = 1000


def component_test(name: str, seen: str):
    """Runs a component test, which does in one process what would take thousands of starts."""
    def check() -> str:
        done = subprocess.run([f"{BUILD}/component_tests", f"--gtest_filter=PreferencesTest.{name}"],
                              capture_output=True, text=True, check=False)
        assert done.returncode == 0 and "[  PASSED  ] 1 test" in done.stdout, done.stdout + done.stderr
        return seen
    return check


def large(ground: Ground) -> str:
    ground.preferences.write_text(json.dumps(KEEPSAKE | {"filler": "x" * LARGE}), encoding="ascii")
    program = ground.start()
    took = ground.plays()
    longest = 0.0
    for volume in ("0.25", "0.5"):
        ground.order("volume", volume)
        before = time.monotonic()
        assert ground.ask("status") == "Playing"
        longest = max(longest, time.monotonic() - before)
    assert longest < ANSWER_LIMIT, f"{longest:.1f} s"
    program.wait_for_preferences(volume=0.5)
    return f"plays after {took:.0f} s; answers within {longest:.1f} s; the file keeps what is unknown"


def large_garbage(ground: Ground) -> str:
    garbage = os.urandom(LARGE)
    ground.preferences.write_bytes(garbage)
    program = ground.start()
    took = ground.plays()
    ground.order("volume", "0.25")
    program.wait_for_preferences(volume=0.25)
    assert ground.preferences.with_suffix(".json.bad").read_bytes() == garbage
    return f"plays after {took:.0f} s; the garbage is set aside"


def folder(ground: Ground) -> str:
    ground.preferences.unlink()
    ground.preferences.mkdir()
    (ground.preferences / "precious").touch()
    program = ground.start()
    took = ground.plays()
    ground.order("volume", "0.25")
    assert ground.ask("volume") == "0.250000"
    quit_cleanly(ground.program)
    assert (ground.preferences / "precious").exists()
    assert "preferences.json" in program.log(), program.log()
    return f"plays after {took:.0f} s; keeps the volume in memory; says so on the standard error"


def read_only(ground: Ground) -> str:
    place = ground.preferences.parent
    program = ground.start(mounts=f"mount --bind {place} {place}\nmount -o remount,ro,bind {place}")
    took = ground.plays()
    ground.order("volume", "0.25")
    assert ground.ask("volume") == "0.250000"
    quit_cleanly(ground.program)
    assert "preferences.json" in program.log(), program.log()
    assert json.loads(ground.preferences.read_text(encoding="ascii")) == KEEPSAKE
    return f"plays after {took:.0f} s; keeps the volume in memory; says so on the standard error"


def change_volume(ground: Ground, times: int) -> None:
    """Sets the volume so many times without waiting for answers."""
    connection = dbus.bus.BusConnection(ground.desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
    player = dbus.Interface(connection.get_object(*PLAYER, introspect=False), "org.freedesktop.DBus.Properties")
    for i in range(times):
        player.Set("org.mpris.MediaPlayer2.Player", "Volume", dbus.Double(i / times, variant_level=1),
                   ignore_reply=True)
    connection.flush()
    connection.close()


def killed_while_writing(ground: Ground) -> str:
    volumes = []
    for _ in range(5):
        program = ground.start("--play", "alarabiya")
        ground.plays()
        before = ground.preferences.stat().st_mtime_ns
        change_volume(ground, WRITES)
        wait_until(lambda: ground.preferences.stat().st_mtime_ns != before, "the first of the writes")
        program.process.send_signal(signal.SIGKILL)
        program.process.wait()
        ground.keeps_settings()
        volumes.append(program.preferences()["volume"])
    ground.start("--play", "alarabiya")
    ground.plays()
    return f"the file is whole each time, with volumes {', '.join(f'{v:.2f}' for v in volumes)}"


ROWS = [
    Row("file.cut-and-spoilt", "cut after every byte, and every byte spoilt once",
        component_test("LoseNothingOfAFileThatIsCutOrSpoilt", "what can be read is kept, the rest is set aside"),
        needs_no_ground=True),
    Row("file.large", "a file of 50 MB", large),
    Row("file.large-garbage", "50 MB of garbage", large_garbage, keeps_settings=False),
    Row("file.folder", "a folder in its place", folder, quits=False, keeps_settings=False),
    Row("file.read-only", "a file that cannot be written", read_only, quits=False),
    Row("file.killed", "kill -9 in the middle of a thousand writes, 5 times", killed_while_writing),
]
