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
/// points since the button was pressed. Returns false where there is none that does it; then the
/// window has moved by `distance`, and the caller has to go on. Main thread.
[[nodiscard]] bool startWindowMove(QWidget& window, QPointF distance);

} // namespace orvane
