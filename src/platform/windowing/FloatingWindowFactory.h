// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/FloatingWindow.h"
#include "platform/windowing/WindowMove.h"

#include <QPointF>

#include <memory>

class QWidget;

namespace orvane {

/// Returns the `FloatingWindow` for the current platform. `window` is a top-level widget without a
/// native window; it must outlive the result. Main thread.
[[nodiscard]] std::unique_ptr<FloatingWindow> makeFloatingWindow(QWidget& window);

/// Lets the window manager move `window` with the pointer, which was at `pressed` when the button
/// was pressed and is at `now`, in points within the window: on another screen those of the desktop
/// differ. Returns null, or the move that the caller has to go on with where no window manager does
/// it. Main thread.
[[nodiscard]] std::unique_ptr<WindowMove> startWindowMove(QWidget& window, QPointF pressed,
                                                          QPointF now);

} // namespace orvane
