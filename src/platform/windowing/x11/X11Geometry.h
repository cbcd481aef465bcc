// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <xcb/xcb.h>

#include <optional>

/// Where windows and the pointer are on the desktop, in pixels, as the X server knows it. Requires
/// a connection unless it says so; main thread. Windows that are gone are empty rectangles.
namespace orvane::X11 {

/// Without a border.
[[nodiscard]] QRect frameOf(xcb_window_t window);

/// Asks for another place and size, or the same size if none is given. Window managers answer in
/// their own time.
void configure(xcb_window_t window, QPoint corner, std::optional<QSize> size = std::nullopt);

[[nodiscard]] QPoint pointer();

/// Whether the server knows where the pointer is: in a Wayland session only while it is over a
/// window of X11. Needs no connection.
[[nodiscard]] bool isPointerKnown();

/// Whether the user holds the left mouse button, also while a window manager has grabbed the
/// pointer. False where nobody knows, as in a Wayland session.
[[nodiscard]] bool isButtonHeld();

} // namespace orvane::X11
