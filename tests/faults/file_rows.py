# SPDX-License-Identifier: GPL-3.0-or-later
"""Faults of the preferences file."""

import json
import os
import signal
import subprocess
import time

import dbus
import dbus.bus

from fixture import UNKNOWN_KEY, Fixture
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


def large(fixture: Fixture) -> str:
    fixture.preferences.write_text(json.dumps(UNKNOWN_KEY | {"filler": "x" * LARGE}), encoding="ascii")
    program = fixture.start()
    took = fixture.plays()
    longest = 0.0
    for volume in ("0.25", "0.5"):
        fixture.order("volume", volume)
        before = time.monotonic()
        assert fixture.ask("status") == "Playing"
        longest = max(longest, time.monotonic() - before)
    assert longest < ANSWER_LIMIT, f"{longest:.1f} s"
    program.wait_for_preferences(volume=0.5)
    return f"plays after {took:.0f} s; answers within {longest:.1f} s; the file keeps unknown keys"


def large_garbage(fixture: Fixture) -> str:
    garbage = os.urandom(LARGE)
    fixture.preferences.write_bytes(garbage)
    program = fixture.start()
    took = fixture.plays()
    fixture.order("volume", "0.25")
    program.wait_for_preferences(volume=0.25)
    assert fixture.preferences.with_suffix(".json.bad").read_bytes() == garbage
    return f"plays after {took:.0f} s; the garbage is kept in a .bad file"


def folder(fixture: Fixture) -> str:
    fixture.preferences.unlink()
    fixture.preferences.mkdir()
    (fixture.preferences / "precious").touch()
    program = fixture.start()
    took = fixture.plays()
    fixture.order("volume", "0.25")
    assert fixture.ask("volume") == "0.250000"
    quit_cleanly(fixture.program)
    assert (fixture.preferences / "precious").exists()
    assert "preferences.json" in program.log(), program.log()
    return f"plays after {took:.0f} s; keeps the volume in memory; prints a message to the standard error"


def read_only(fixture: Fixture) -> str:
    place = fixture.preferences.parent
    program = fixture.start(mounts=f"mount --bind {place} {place}\nmount -o remount,ro,bind {place}")
    took = fixture.plays()
    fixture.order("volume", "0.25")
    assert fixture.ask("volume") == "0.250000"
    quit_cleanly(fixture.program)
    assert "preferences.json" in program.log(), program.log()
    assert json.loads(fixture.preferences.read_text(encoding="ascii")) == UNKNOWN_KEY
    return f"plays after {took:.0f} s; keeps the volume in memory; prints a message to the standard error"


def change_volume(fixture: Fixture, times: int) -> None:
    """Sets the volume `times` times without waiting for answers."""
    connection = dbus.bus.BusConnection(fixture.desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
    player = dbus.Interface(connection.get_object(*PLAYER, introspect=False), "org.freedesktop.DBus.Properties")
    for i in range(times):
        player.Set("org.mpris.MediaPlayer2.Player", "Volume", dbus.Double(i / times, variant_level=1),
                   ignore_reply=True)
    connection.flush()
    connection.close()


def killed_while_writing(fixture: Fixture) -> str:
    volumes = []
    for _ in range(5):
        program = fixture.start("--play", "alarabiya")
        fixture.plays()
        before = fixture.preferences.stat().st_mtime_ns
        change_volume(fixture, WRITES)
        wait_until(lambda: fixture.preferences.stat().st_mtime_ns != before, "the first of the writes")
        program.process.send_signal(signal.SIGKILL)
        program.process.wait()
        fixture.keeps_settings()
        volumes.append(program.preferences()["volume"])
    fixture.start("--play", "alarabiya")
    fixture.plays()
    return f"the file is intact each time, with volumes {', '.join(f'{v:.2f}' for v in volumes)}"


ROWS = [
    Row("file.damaged", "truncated after every byte, and every byte corrupted once",
        component_test("LoseNothingOfADamagedFile", "a readable file is kept, any other is renamed to .bad"),
        needs_no_fixture=True),
    Row("file.large", "a file of 50 MB", large),
    Row("file.large-garbage", "50 MB of garbage", large_garbage, keeps_settings=False),
    Row("file.folder", "a folder in place of the file", folder, quits=False, keeps_settings=False),
    Row("file.read-only", "a file that cannot be written", read_only, quits=False),
    Row("file.killed", "kill -9 during a thousand writes, 5 times", killed_while_writing),
]
