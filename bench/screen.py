# SPDX-License-Identifier: GPL-3.0-or-later
"""Measures when something appears on the screen, in the same way for every player.

It calls Xlib directly, since a whole screenshot takes longer than the measured times."""

from __future__ import annotations

import ctypes
import ctypes.util
import select
import time

_SUBSTRUCTURE_NOTIFY = 1 << 19
_MAP_NOTIFY = 19
_Z_PIXMAP = 2
_POLL_SECONDS = 0.001


class _MapEvent(ctypes.Structure):
    _fields_ = [
        ("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("sent", ctypes.c_int),
        ("display", ctypes.c_void_p), ("event", ctypes.c_ulong), ("window", ctypes.c_ulong),
    ]


class _Event(ctypes.Union):
    _fields_ = [("type", ctypes.c_int), ("map", _MapEvent), ("padding", ctypes.c_long * 24)]


def _library() -> ctypes.CDLL:
    x = ctypes.CDLL(ctypes.util.find_library("X11"))
    x.XOpenDisplay.restype = ctypes.c_void_p
    x.XDefaultRootWindow.restype = ctypes.c_ulong
    x.XGetImage.restype = ctypes.c_void_p
    x.XGetPixel.restype = ctypes.c_ulong
    for function in (x.XDefaultRootWindow, x.XConnectionNumber, x.XPending, x.XCloseDisplay):
        function.argtypes = [ctypes.c_void_p]
    x.XSelectInput.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_long]
    x.XNextEvent.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
    x.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
    x.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
                            ctypes.c_uint, ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
    x.XGetPixel.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int]
    x.XDestroyImage.argtypes = [ctypes.c_void_p]
    return x


class Screen:
    """Watches a running display. Use as a context manager. Times are seconds of the monotonic clock; a wait that
    takes too long raises `TimeoutError`."""

    def __init__(self, display: str):
        self._x = _library()
        self._display = self._x.XOpenDisplay(display.encode())
        if not self._display:
            raise RuntimeError(f"no X server answers at {display}")
        self._root = self._x.XDefaultRootWindow(self._display)
        self._x.XSelectInput(self._display, self._root, _SUBSTRUCTURE_NOTIFY)
        self._x.XSync(self._display, 0)

    def __enter__(self) -> "Screen":
        return self

    def __exit__(self, *_) -> None:
        self._x.XCloseDisplay(self._display)

    def _next_event(self) -> _Event:
        event = _Event()
        self._x.XNextEvent(self._display, ctypes.byref(event))
        return event

    def forget_windows(self) -> None:
        """Drops the events so far."""
        self._x.XSync(self._display, 0)
        while self._x.XPending(self._display):
            self._next_event()

    def wait_for_window(self, deadline: float = 30) -> float:
        """Waits until the next window, with its frame, is mapped; returns when."""
        end = time.monotonic() + deadline
        while time.monotonic() < end:
            if not self._x.XPending(self._display):
                select.select([self._x.XConnectionNumber(self._display)], [], [], end - time.monotonic())
            now = time.monotonic()
            while self._x.XPending(self._display):
                if self._next_event().type == _MAP_NOTIFY:
                    return now
        raise TimeoutError("no window appeared")

    def pixel(self, x: int, y: int) -> tuple[int, int, int]:
        image = self._x.XGetImage(self._display, self._root, x, y, 1, 1, 2**32 - 1, _Z_PIXMAP)
        if not image:
            raise RuntimeError("the X server returned no image")
        value = self._x.XGetPixel(image, 0, 0)
        self._x.XDestroyImage(image)
        return value >> 16 & 255, value >> 8 & 255, value & 255

    def wait_for_colour(self, place: tuple[int, int], colour: str, deadline: float = 30) -> float:
        """Waits for this (an ffmpeg colour) at the place; returns when it was first seen."""
        wanted = bytes.fromhex(colour.removeprefix("0x"))
        end = time.monotonic() + deadline
        while time.monotonic() < end:
            if all(abs(a - b) <= 24 for a, b in zip(self.pixel(*place), wanted)):
                return time.monotonic()
            time.sleep(_POLL_SECONDS)
        raise TimeoutError(f"the colour {colour} did not appear; there is {self.pixel(*place)}")
