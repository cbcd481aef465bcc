# SPDX-License-Identifier: GPL-3.0-or-later
"""The player window on a desktop: its place, dragging, resizing, full screen, and ghost mode."""

import signal
import time

from case import BUILD, DesktopCase
from tools.backdrop import Backdrop
from tools.desktop import Desktop, WaylandDesktop
from tools.processes import own_memory_mib
from tools.waiting import stays, wait_until

BAR_GREY = 220
COLOUR = (0, 170, 0)
FIRST_FRAME = (1280 - 480 - 20, 720 - 314 - 20, 480, 314)
# MiB: the share of buffers that happen to be in use; the sanitizers keep what was freed.
MEMORY_NOISE = 5 if "asan" not in BUILD else 200


def is_backdrop(pixel) -> bool:
    return max(abs(a - b) for a, b in zip(pixel, COLOUR)) < 12


class WindowCase(DesktopCase):
    """The window shows an error, so that nothing moves in it and no site is needed."""

    def open(self, compositor: bool = True, **variables):
        self.desktop = self.enterContext(Desktop(compositor=compositor))
        return self.open_here(**variables)

    def open_here(self, **variables):
        program = self.start("window_probe", **variables)
        program.wait_for("window-shown")
        program.wait_for("error")
        return program

    def centre(self) -> tuple[int, int]:
        """Returns the middle of the picture, where nothing but its colour is."""
        x, y, width, height = self.program.frame()
        return x + width // 2, y + height // 2 - 40

    def wait_for_frame(self, frame, what: str):
        wait_until(lambda: self.program.frame() == frame, lambda: f"{what}: {frame}; it is {self.program.frame()}")

    def drag(self, x: int, y: int, dx: int, dy: int, frame, what: str):
        """Drags until the window has this frame, and releases the button."""
        self.desktop.drag(x, y, dx, dy, lambda: self.program.frame() == frame,
                          lambda: f"{what}: {frame}; it is {self.program.frame()}")


class Window(WindowCase):
    def test_place_and_level(self):
        program = self.open()
        self.wait_for_frame(FIRST_FRAME, "first start")
        backdrop = self.enterContext(Backdrop(self.desktop, COLOUR))
        backdrop.raise_()
        x, y = self.centre()
        self.desktop.click(x, y)
        wait_until(lambda: not is_backdrop(self.desktop.pixel(x, y)), "the window above the other one")
        self.desktop.click(300, 300)
        wait_until(lambda: backdrop.clicks() == [(300, 300)], "the click beside the window, and only that")
        self.desktop.run("wmctrl", "-n", "2")
        for shown_again in (False, True):
            if shown_again:
                program.tell("close")
                program.tell("show")
            window = program.window()
            hints = [f"_NET_WM_STATE_{hint}" for hint in ("ABOVE", "SKIP_TASKBAR", "SKIP_PAGER")]
            # The number of the desktop means all of them.
            hints.append(str(0xFFFFFFFF))

            def has_hints(window=window, hints=hints) -> bool:
                shown = self.desktop.run("xprop", "-id", window, "_NET_WM_STATE", "_NET_WM_DESKTOP")
                return all(hint in shown for hint in hints)

            wait_until(has_hints, "the hints")
        self.desktop.run("wmctrl", "-s", "1")
        wait_until(lambda: self.desktop.run("xprop", "-root", "_NET_CURRENT_DESKTOP").endswith("1\n"), "desktop 2")
        self.wait_for_frame(FIRST_FRAME, "the same place on desktop 2")

    def test_drag_and_resize(self):
        program = self.open()
        self.wait_for_frame(FIRST_FRAME, "first start")
        self.drag(*self.centre(), -300, -150, (480, 236, 480, 314), "dragged by the picture")
        self.drag(480 + 150, 236 + 314 - 22, 200, 100, (680, 336, 480, 314), "dragged by the bar")
        # The first resize gives it the shape 16:9. From then on it keeps that, and the opposite corner stays.
        self.drag(680 + 478, 336 + 312, 60, 60, (680, 336, 540, 303), "larger by the lower right corner")
        self.drag(680 + 2, 336 + 2, -100, -100, (580, 279, 640, 360), "larger by the upper left corner")
        self.drag(580 + 638, 279 + 358, -900, -500, (580, 279, 320, 180), "the smallest size")
        self.drag(580 + 318, 279 + 90, 300, 0, (580, 279, 620, 348), "wider by the right edge")
        self.assertEqual(program.quit(), 0)
        # The last size is not changed to an exact 16:9 either.
        self.assertEqual(program.preferences()["windowFrame"], "{{580, 279}, {620, 348}}")
        self.open_here()
        self.wait_for_frame((580, 279, 620, 348), "where it was")

    def test_full_screen(self):
        program = self.open()
        frame = FIRST_FRAME
        self.wait_for_frame(frame, "first start")
        for way in ("picture", "button", "notification"):
            if way == "picture":
                toggle = lambda: self.desktop.double_click(*self.centre())
            elif way == "button":
                toggle = lambda: self.desktop.click(
                    program.frame()[0] + program.frame()[2] - 6 - 32 - 72 + 16,
                    program.frame()[1] + program.frame()[3] - 22)
            else:
                toggle = lambda: program.tell("fullscreen")
            toggle()
            self.wait_for_frame((0, 0, 1280, 720), f"full screen by {way}")
            wait_until(lambda: program.tell("state") == "fullscreen", "the state")
            toggle()
            self.wait_for_frame(frame, f"back by {way}")
            wait_until(lambda: program.tell("state") == "window", "the state")
        program.tell("fullscreen")
        self.wait_for_frame((0, 0, 1280, 720), "full screen")
        self.leave_the_pointer_alone()
        # Closed in full screen, it opens in its frame, and both ways still work.
        self.desktop.close(program.window())
        wait_until(lambda: not program.is_shown(), "a hidden window")
        self.assertEqual(program.tell("state"), "window")
        program.tell("show")
        for wanted in (frame, (0, 0, 1280, 720), frame, (0, 0, 1280, 720)):
            self.wait_for_frame(wanted, "opened again, and full screen by turns")
            program.tell("fullscreen")
        self.wait_for_frame(frame, "opened again")
        program.tell("fullscreen")
        self.wait_for_frame((0, 0, 1280, 720), "full screen")
        self.assertEqual(program.quit(), 0)
        self.assertEqual(program.preferences()["windowFrame"], "{{780, 386}, {480, 314}}")

    def leave_the_pointer_alone(self):
        """In full screen the bar and the close button go after the last movement, and come back with the next."""
        def close_button_is_up() -> bool:
            return max(self.desktop.pixel(19, 19)) > 25

        for dx in (3, 1):
            self.desktop.point(600, 300)
            self.desktop.move_pointer(dx, 0)
            wait_until(lambda: self.bar_is_up() and close_button_is_up(), "the bar and the close button")
            wait_until(lambda: self.bar_is_gone() and not close_button_is_up(), "nothing but the picture")

    def test_level_of_dialogs(self):
        """Above other programs' windows only while the player window would hide it."""
        program = self.open()
        self.wait_for_frame(FIRST_FRAME, "first start")
        backdrop = self.enterContext(Backdrop(self.desktop, COLOUR))
        self.desktop.activate(program.window())
        self.desktop.key("comma")
        settings = self.desktop.window("Orvane Settings")
        x, y, width, height = self.desktop.frame(settings)
        under_the_player = (x + width - 10, y + height - 10)
        beside = (x + 10, y + height - 10)
        self.assertGreater(under_the_player[0], FIRST_FRAME[0])

        def shows_settings(place) -> bool:
            return min(self.desktop.pixel(*place)) > 200

        wait_until(lambda: shows_settings(under_the_player), "the settings above the player")
        backdrop.raise_()
        self.assertTrue(shows_settings(beside), "the settings above the other program")
        # Away from the player it is a window like others.
        self.drag(*self.centre(), 0, -FIRST_FRAME[1], (780, 0, 480, 314), "dragged away")
        self.drag(780 + 150, 314 - 22, 130, 0, (910, 0, 480, 314), "dragged away further")
        backdrop.raise_()
        wait_until(lambda: is_backdrop(self.desktop.pixel(*beside)), "the other program above the settings")

    def bar_is_up(self) -> bool:
        x, y, width, height = self.program.frame()
        return min(self.desktop.pixel(x + width // 2 - 40, y + height - 22)) > BAR_GREY - 20

    def bar_is_gone(self) -> bool:
        x, y, width, height = self.program.frame()
        return max(self.desktop.pixel(x + width // 2 - 40, y + height - 22)) < 10

    def test_control_bar(self):
        self.open()
        wait_until(self.bar_is_up, "the bar at the start")
        self.desktop.point(*self.centre())
        self.desktop.point(10, 10)
        left = time.monotonic()
        wait_until(self.bar_is_gone, "the bar gone with the pointer")
        print(f"the bar was gone {time.monotonic() - left:.2f} s after the pointer")

        # While the pointer rests, it goes by itself.
        self.desktop.point(*self.centre())
        wait_until(self.bar_is_up, "the bar back")
        came = time.monotonic()
        wait_until(self.bar_is_gone, "the bar gone by itself")
        print(f"a bar that was left alone was gone after {time.monotonic() - came:.2f} s")

        # After a movement it stays, longer than the timer of the case above.
        x, y = self.centre()
        self.desktop.point(x + 1, y)
        wait_until(self.bar_is_up, "the bar back again")
        self.desktop.point(x, y)
        stays(lambda: not self.bar_is_gone(), "the bar while the pointer is there", 4)
        self.assertTrue(self.bar_is_up())

    def test_overlay(self):
        program = self.open()
        x, y, width, height = program.frame()
        middle = (x + width // 2, y + height // 2)

        def brightest(top, bottom):
            area = (middle[0] - 60, middle[1] + top, middle[0] + 60, middle[1] + bottom)
            return max(max(p) for p in self.desktop.screenshot().crop(area).getdata())

        spinner, text, button = (-40, -8), (-6, 30), (44, 70)
        program.tell("loading")
        wait_until(lambda: brightest(*spinner) > 200 and brightest(*text) > 200 and brightest(*button) < 10,
                   "a spinner, a text and no button")
        program.tell("error something went wrong")
        wait_until(lambda: brightest(*spinner) < 10 and brightest(*text) > 200 and brightest(*button) > 200,
                   "a text, a button and no spinner")
        program.tell("playing")
        wait_until(lambda: max(brightest(*place) for place in (spinner, text, button)) < 10, "the picture")

    def test_close_button(self):
        program = self.open()
        self.wait_for_frame(FIRST_FRAME, "first start")
        self.drag(*self.centre(), -100, -100, (680, 286, 480, 314), "dragged")
        self.desktop.click(680 + 19, 286 + 19)
        wait_until(lambda: not program.is_shown(), "a hidden window")
        self.assertEqual(program.quit(), 0)
        self.assertEqual(program.preferences()["windowFrame"], "{{680, 286}, {480, 314}}")

    def is_near(self, wanted, delta: float) -> bool:
        frame = self.program.frame()
        return frame[2:] == wanted[2:] and all(abs(a - b) <= delta for a, b in zip(frame, wanted))

    def wait_near(self, wanted, delta: float):
        """Waits until the frame is the wanted one, give or take `delta` pixels, and the program and the window
        manager have nothing more to do about it; returns the frame."""
        def at_rest():
            frame = self.program.frame()
            self.program.tell("state")
            self.desktop.run("wmctrl", "-m")
            return frame if self.is_near(wanted, delta) and self.program.frame() == frame else None

        return wait_until(at_rest, lambda: f"{wanted}; it is {self.program.frame()}")

    def test_scale_factors(self):
        """Dragged to the second of two screens, it keeps its size, and its place at the next start."""
        self.desktop = self.enterContext(Desktop("2560x1440", compositor=True))
        self.desktop.run("xrandr", "--setmonitor", "left", "1280/300x1440/340+0+0", "screen")
        self.desktop.run("xrandr", "--setmonitor", "right", "1280/300x1440/340+1280+0", "none")
        for scale in (1, 1.5, 2):
            program = self.open_here(QT_SCALE_FACTOR=str(scale))
            size = (round(480 * scale), round(314 * scale))
            # The usable area is told in whole points, and so are the pointer's movements.
            first = self.wait_near((1280 - 20 * scale - size[0], 1440 - 20 * scale - size[1], *size), 1)
            wanted = (first[0] + 1007, first[1] - 77, *size)
            self.desktop.drag(*self.centre(), 1007, -77, lambda: self.is_near(wanted, scale), f"dragged to {wanted}")
            frame = self.wait_near(wanted, scale)
            self.assertEqual(program.quit(), 0)
            self.open_here(QT_SCALE_FACTOR=str(scale))
            self.wait_for_frame(frame, f"where it was at {scale}")
            self.assertEqual(self.program.quit(), 0)
            (self.desktop.folder / "home/.config/orvane/preferences.json").unlink()


    def test_scale_changes(self):
        """The desktop changes its scale while the program runs: windows keep their sizes in points."""
        self.desktop = self.enterContext(Desktop("1600x1200", compositor=True))
        settings_file = self.desktop.folder / "xsettings"

        def set_scale(scale: float):
            settings_file.write_text(f"Xft/DPI {round(scale * 96 * 1024)}\n", encoding="ascii")

        set_scale(1)
        daemon = self.desktop.background(["xsettingsd", "-c", str(settings_file)])
        wait_until(lambda: "xsettings" in self.desktop.run("xwininfo", "-root", "-tree"), "the settings daemon")
        program = self.open_here()
        self.desktop.activate(program.window())
        self.desktop.key("comma")
        settings = self.desktop.window("Orvane Settings")
        for scale in (1, 1.5, 1):
            set_scale(scale)
            daemon.send_signal(signal.SIGHUP)
            for window, size in ((settings, (520, 440)), (program.window(), (480, 314))):
                wanted = tuple(round(side * scale) for side in size)
                wait_until(lambda w=window, s=wanted: self.desktop.frame(w)[2:] == s,
                           lambda w=window, s=wanted: f"{s}; it is {self.desktop.frame(w)}")
        self.wait_near((1600 - 480 - 20, 1200 - 314 - 20, 480, 314), 2)


class Ghost(WindowCase):
    """In front of a green window; screenshots show whether the player covers it."""

    def open_over_backdrop(self, compositor: bool = True):
        program = self.open(compositor)
        self.backdrop = self.enterContext(Backdrop(self.desktop, COLOUR))
        program.tell("playing")
        self.wait_until_shown()
        return program

    def seen(self):
        return self.desktop.pixel(*self.centre())

    def wait_until_shown(self, opacity: float = 1):
        """Waits until the green window shines through the black picture accordingly."""
        green = round(COLOUR[1] * (1 - opacity))
        wait_until(lambda: abs(self.seen()[1] - green) < 12 and self.seen()[0] < 12, f"opacity {opacity}")

    def wait_until_vanished(self):
        since = time.monotonic()
        wait_until(lambda: is_backdrop(self.seen()), "the other window in its place")
        print(f"it had vanished after {time.monotonic() - since:.2f} s")

    def click_reaches_the_other(self, x: int, y: int):
        before = self.backdrop.clicks()
        self.desktop.click(x, y)
        wait_until(lambda: self.backdrop.clicks() == before + [(x, y)], "the click in the other program")

    def come_and_go(self):
        """Moves the pointer in and out, also over the edges' padding."""
        x, y, width, height = self.program.frame()
        self.program.tell("ghost on")
        self.assertFalse(is_backdrop(self.seen()), "the pointer is elsewhere")
        self.desktop.point(*self.centre())
        self.wait_until_vanished()
        self.click_reaches_the_other(*self.centre())
        self.desktop.point(x - 20, y + 50)
        self.wait_until_shown()
        for place in ((x - 7, y + 50), (x + 50, y - 7)):
            self.desktop.point(*place)
            self.wait_until_vanished()
            self.click_reaches_the_other(x + 100, y + 50)
            self.desktop.point(x - 10, y - 10)
            self.wait_until_shown()

    def change_the_opacity(self):
        """Halves it while the window is hidden: this has an effect when the pointer has left."""
        self.desktop.point(*self.centre())
        self.wait_until_vanished()
        self.program.tell("opacity 0.5")
        self.assertTrue(is_backdrop(self.seen()))
        self.desktop.point(100, 300)

    def be_turned_off(self):
        self.desktop.point(*self.centre())
        self.wait_until_vanished()
        self.program.tell("ghost off")
        self.wait_until_shown()
        clicks = self.backdrop.clicks()
        self.desktop.click(*self.centre())
        self.desktop.point(100, 300)
        self.click_reaches_the_other(100, 300)
        self.assertEqual(len(self.backdrop.clicks()), len(clicks) + 1, "the click on the window is not the other program's")

    def test_with_a_compositor(self):
        program = self.open_over_backdrop()
        self.come_and_go()
        self.change_the_opacity()
        self.wait_until_shown(0.5)
        program.tell("opacity 0.7")
        self.wait_until_shown(0.7)
        program.tell("opacity 1")
        self.be_turned_off()
        # Turned on while the pointer is there.
        self.desktop.point(*self.centre())
        program.tell("ghost on")
        self.wait_until_vanished()
        self.assertEqual(program.quit(), 0)
        # The next run starts in ghost mode.
        self.assertIs(program.preferences()["ghostModeEnabled"], True)
        self.open_here()
        self.wait_until_vanished()

    def test_without_a_compositor(self):
        program = self.open_over_backdrop(compositor=False)
        self.come_and_go()
        self.change_the_opacity()
        self.wait_until_shown()
        hint = lambda: self.desktop.run("xprop", "-id", program.window(), "_NET_WM_WINDOW_OPACITY")
        wait_until(lambda: hint().split()[-1] == str(0x80000000), "the hint of half the opacity")
        self.be_turned_off()

    def test_in_a_wayland_session(self):
        self.desktop = self.enterContext(WaylandDesktop())
        program = self.open_here()
        program.tell("playing")
        frame = (780, 386, 480, 314)
        self.wait_for_frame(frame, "first start")

        def has_vanished() -> bool:  # The bright desktop is where the picture would be black.
            return min(self.desktop.pixel(frame[0] + 40, frame[1] + 40)) > 80

        def leave_and_wait(how):
            since = time.monotonic()
            how()
            wait_until(lambda: not has_vanished(), "the window back")
            print(f"it was back after {time.monotonic() - since:.2f} s")

        wait_until(lambda: not has_vanished(), "the window at the start")
        program.tell("ghost on")
        self.desktop.point(*self.centre())
        wait_until(has_vanished, "the desktop in its place")
        # The program polls the pointer meanwhile; this must not be visible.
        stays(has_vanished, "the desktop in its place", 1.5)
        leave_and_wait(lambda: self.desktop.point(300, 300))

        def move_out_slowly():
            x, y = self.desktop.pointer()
            for step in range(frame[0] - 40, x, 3):
                self.desktop.point(x - (step - frame[0] + 40), y)

        self.desktop.point(frame[0] + 60, frame[1] + 100)
        wait_until(has_vanished, "the desktop in its place")
        leave_and_wait(move_out_slowly)
        self.desktop.point(*self.centre())
        wait_until(has_vanished, "the desktop in its place")
        program.tell("opacity 1")
        self.assertTrue(has_vanished())
        program.tell("ghost off")
        wait_until(lambda: not has_vanished(), "the window back")
        self.assertEqual(program.quit(), 0)

        # Clicks, with a window of another program behind it.
        def backdrop_is_seen() -> bool:
            return is_backdrop(self.desktop.pixel(frame[0] + 40, frame[1] + 40))

        # XWayland notices a pointer over a new window only when it moves.
        self.desktop.point(300, 300)
        backdrop = self.enterContext(Backdrop(self.desktop, COLOUR))
        wait_until(backdrop_is_seen, "the other window")
        program = self.open_here()
        wait_until(lambda: not backdrop_is_seen(), "the window before it")
        program.tell("ghost on")
        self.desktop.point(*self.centre())
        wait_until(backdrop_is_seen, "the other window in its place")
        self.desktop.click(*self.centre())
        wait_until(lambda: backdrop.clicks() == [self.centre()], "the click in the other program")

    def assert_no_growth(self, samples: list[float], what: str):
        """The least of each quarter counts: a buffer of the size of the screen may still be in use in any sample."""
        quarter = len(samples) // 4
        held = [min(samples[i * quarter:(i + 1) * quarter]) for i in range(4)]
        print(f"memory in each quarter, {what}, MiB:", held)
        self.assertLess(held[-1] - held[0], MEMORY_NOISE)

    def test_two_hundred_times(self):
        program = self.open_over_backdrop()
        program.tell("ghost on")
        inside, outside = self.centre(), (100, 300)

        def pointed(place, property_is):
            self.desktop.point(*place)
            opacity = lambda: self.desktop.run("xprop", "-id", window, "_NET_WM_WINDOW_OPACITY")
            wait_until(lambda: property_is(opacity()), f"the opacity at {place}")

        window = program.window()
        samples = []
        for i in range(100):
            pointed(inside, lambda text: text.split()[-1] == "0")
            pointed(outside, lambda text: "not found" in text or text.split()[-1] == str(0xFFFFFFFF))
            samples.append(own_memory_mib(program.process.pid))
        self.assert_no_growth(samples, "ghost mode")
        program.tell("ghost off")
        frame = program.frame()
        samples = []
        for i in range(200):
            program.tell("fullscreen")
            full = (i % 2 == 0)
            self.wait_for_frame((0, 0, 1280, 720) if full else frame, f"toggle {i}")
            if not full:
                samples.append(own_memory_mib(program.process.pid))
        self.assert_no_growth(samples, "full screen")
        self.wait_until_shown()
        self.assertEqual(program.quit(), 0)
