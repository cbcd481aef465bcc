# SPDX-License-Identifier: GPL-3.0-or-later
"""The D-Bus services of a desktop that keep the screen awake and announce sleep, as far as the program uses them.

usage: fakedesktop.py NAME...     Takes the names on the session bus and prints "ready", then a line for each
call: "inhibit" with the texts that it was given, and "release", also when the caller has left the bus. On its
standard input "slow" makes it hold its answers back (and print "asked") until "answer", and "wake" announces
the end of a sleep; "lock" and "unlock" tell of the session, "blank" and "unblank" of the screen saver, "metered" and
"unmetered" of the network."""

import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

SCREEN_SAVER = "org.freedesktop.ScreenSaver"
PORTAL = "org.freedesktop.portal.Inhibit"
IDLE = 8
SESSION = "/org/freedesktop/login1/session/_31"


def report(line: str) -> None:
    print(line, flush=True)


class Service(dbus.service.Object):
    def __init__(self, bus: dbus.Bus, path: str):
        super().__init__(bus, path)
        self._bus = bus
        self._watches = {}
        self._count = 0
        self.is_slow = False
        self.late_answers = []

    def _grant(self, key, line: str, answer, sender: str) -> None:
        def gone(owner):
            if not owner:
                self._release(key)

        def grant():
            report(line)
            self._watches[key] = self._bus.watch_name_owner(sender, gone)
            answer(key)

        if self.is_slow:
            self.late_answers.append(grant)
            report("asked")
        else:
            grant()

    def _release(self, key) -> None:
        if watch := self._watches.pop(key, None):
            watch.cancel()
            report("release")

    @dbus.service.method(SCREEN_SAVER, "ss", "u", async_callbacks=("answer", "_"), sender_keyword="sender")
    def Inhibit(self, program, reason, answer, _, sender):
        self._count += 1
        self._grant(dbus.UInt32(self._count), f"inhibit {program} {reason}", answer, sender)

    @dbus.service.method(SCREEN_SAVER, "", "b")
    def GetActive(self):
        return False

    @dbus.service.signal(SCREEN_SAVER, "b")
    def ActiveChanged(self, is_active):
        pass

    @dbus.service.method(SCREEN_SAVER, "u", "")
    def UnInhibit(self, cookie):
        self._release(cookie)


class Portal(Service):
    @dbus.service.method(PORTAL, "sua{sv}", "o", async_callbacks=("answer", "_"), sender_keyword="sender")
    def Inhibit(self, _window, flags, options, answer, _, sender):
        if flags != IDLE:
            raise dbus.exceptions.DBusException(f"flags {flags}")
        self._count += 1
        path = f"/org/freedesktop/portal/desktop/request/{self._count}"
        Request(self._bus, path, self)
        self._grant(dbus.ObjectPath(path), f"inhibit {options['reason']}", answer, sender)

    def close(self, path: str) -> None:
        self._release(path)


class Request(dbus.service.Object):
    def __init__(self, bus: dbus.Bus, path: str, portal: Portal):
        super().__init__(bus, path)
        self._path, self._portal = path, portal

    @dbus.service.method("org.freedesktop.portal.Request", "", "")
    def Close(self):
        self._portal.close(self._path)


class Logind(dbus.service.Object):
    @dbus.service.signal("org.freedesktop.login1.Manager", "b")
    def PrepareForSleep(self, begins):
        pass

    @dbus.service.method("org.freedesktop.login1.Manager", "s", "o")
    def GetSession(self, _name):
        return SESSION


class Session(dbus.service.Object):
    @dbus.service.method(dbus.PROPERTIES_IFACE, "ss", "v")
    def Get(self, _interface, _name):
        return False

    @dbus.service.signal(dbus.PROPERTIES_IFACE, "sa{sv}as")
    def PropertiesChanged(self, interface, changed, invalidated):
        pass

    def lock(self, is_locked: bool) -> None:
        self.PropertiesChanged("org.freedesktop.login1.Session", {"LockedHint": is_locked}, [])


class NetworkManager(dbus.service.Object):
    _metered = dbus.UInt32(0)

    @dbus.service.method(dbus.PROPERTIES_IFACE, "ss", "v")
    def Get(self, _interface, _name):
        return self._metered

    @dbus.service.signal(dbus.PROPERTIES_IFACE, "sa{sv}as")
    def PropertiesChanged(self, interface, changed, invalidated):
        pass

    def change(self, is_metered: bool) -> None:
        self._metered = dbus.UInt32(1 if is_metered else 2)
        self.PropertiesChanged("org.freedesktop.NetworkManager", {"Metered": self._metered}, [])


def main() -> None:
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    service = Service(bus, "/org/freedesktop/ScreenSaver")
    Portal(bus, "/org/freedesktop/portal/desktop")
    logind = Logind(bus, "/org/freedesktop/login1")
    session = Session(bus, SESSION)
    network = NetworkManager(bus, "/org/freedesktop/NetworkManager")

    def handle_order(*_) -> bool:
        order = sys.stdin.readline().strip()
        if order == "slow":
            service.is_slow = True
        elif order == "answer":
            service.is_slow = False
            while service.late_answers:
                service.late_answers.pop(0)()
        elif order == "wake":
            logind.PrepareForSleep(False)
        elif order in ("lock", "unlock"):
            session.lock(order == "lock")
        elif order in ("metered", "unmetered"):
            network.change(order == "metered")
        elif order in ("blank", "unblank"):
            service.ActiveChanged(order == "blank")
        return bool(order)

    names = [dbus.service.BusName(name, bus, do_not_queue=True) for name in sys.argv[1:]]
    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, handle_order)
    report(f"ready {len(names)}")
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
