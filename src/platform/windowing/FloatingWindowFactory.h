// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/FloatingWindow.h"

#include <QPointF>

#include <memory>

class QWidget;

namespace orvane {

/// Returns the `FloatingWindow` for the current platform. `window` is a top-level widget without a
/// native window; it must outlive the result. Main thread.
[[nodiscard]] std::unique_ptr<FloatingWindow> makeFloatingWindow(QWidget& window);

/// Lets the window manager move `window` with the pointer, which has already moved by `distance`
/// points since the button was pressed. Main thread.
void startWindowMove(QWidget& window, QPointF distance);

} // namespace orvane
