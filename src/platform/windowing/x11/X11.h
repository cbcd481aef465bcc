// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Qt's connection to the X server, for requests that Qt has no functions for. Main thread. Replies
/// are waited for; the server normally runs on the same machine.
namespace orvane::X11 {

/// Whether the server in DISPLAY can be connected to. Needs no application object.
[[nodiscard]] bool canConnect();

/// Returns null where the program does not run on X11.
[[nodiscard]] xcb_connection_t* connection();

/// Returns the root window of the first screen. Requires a connection.
[[nodiscard]] xcb_window_t root();

/// Requires a connection. Atoms are cached.
[[nodiscard]] xcb_atom_t atom(std::string_view name);

/// Returns the atoms, windows or numbers in a property of a window; empty if it has none of this
/// type. Requires a connection.
[[nodiscard]] std::vector<uint32_t> values(xcb_window_t window, xcb_atom_t property,
                                           xcb_atom_t type);

/// Whether the window manager announces this part of EWMH. Requires a connection.
[[nodiscard]] bool windowManagerSupports(std::string_view name);

/// Returns the window manager's name for itself, in UTF-8; empty where none tells one. Requires a
/// connection.
[[nodiscard]] std::string windowManager();

/// Sends the window manager a request about a window, as EWMH defines them. Requires a connection.
void ask(xcb_window_t window, std::string_view request, std::array<uint32_t, 5> data);

/// Whether the X server is XWayland, which sees the pointer only while that is over one of its own
/// windows.
[[nodiscard]] bool isXWayland();

/// Whether a compositor is running.
[[nodiscard]] bool isComposited();

/// Whether a program owns the selection, which stands for a role on the desktop such as its tray or
/// its compositor. False without a connection.
[[nodiscard]] bool hasSelectionOwner(std::string_view selection);

/// The X server's own screen saver, which blanks the screen after a while without input.
enum class ScreenSaver { running, suspended };
/// A suspension lasts until it is undone or the program exits. Returns false where the server does
/// not support it.
bool setScreenSaver(ScreenSaver state);

/// Logs what the desktop announces about itself.
void logDesktop();

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

} // namespace orvane::X11
