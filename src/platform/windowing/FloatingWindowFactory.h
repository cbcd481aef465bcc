// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/FloatingWindow.h"

#include <QPointF>

#include <memory>

class QWidget;

namespace orvane {

/// The `FloatingWindow` for the desktop that the program runs on. `window` is a top level that
/// outlives the result and has no native window yet. Main thread.
[[nodiscard]] std::unique_ptr<FloatingWindow> makeFloatingWindow(QWidget& window);

/// Has the window manager move `window` with the pointer, which is `distance` points away from
/// where it was pressed already. Main thread.
void startWindowMove(QWidget& window, QPointF distance);

} // namespace orvane
