// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

/// The toolkit's own connection to the X server, for what the toolkit has no words for. Main
/// thread. Answers come from a server on the same machine and are waited for.
namespace orvane::X11 {

/// Whether there is a server at the address in DISPLAY; before there is an application object, too.
[[nodiscard]] bool canConnect();

/// Null where the program does not run on X11.
[[nodiscard]] xcb_connection_t* connection();

/// The root window of the first screen; there is a connection.
[[nodiscard]] xcb_window_t root();

/// Asked for once and remembered.
[[nodiscard]] xcb_atom_t atom(std::string_view name);

/// Whether the X server is a guest in a Wayland session, where it knows of the pointer only while
/// that is over one of its own windows.
[[nodiscard]] bool isXWayland();

/// Whether a compositing manager draws the screen.
[[nodiscard]] bool isComposited();

/// Whether some program has taken this part of the desktop upon itself; false without a connection.
[[nodiscard]] bool hasSelectionOwner(std::string_view selection);

/// The server blanks the screen by itself after a while without input, unless that is suspended.
enum class ScreenSaver { running, suspended };
/// Each suspension lasts until it is taken back or the program has gone. False where there is no
/// server that can do that.
bool setScreenSaver(ScreenSaver state);

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <class T>
using Reply = std::unique_ptr<T, Free>;

} // namespace orvane::X11
