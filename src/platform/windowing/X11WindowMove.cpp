// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/X11WindowMove.h"

#include "platform/windowing/x11/X11Geometry.h"

#include <QWidget>

namespace orvane {

X11WindowMove::X11WindowMove(const QWidget& window, QPointF pressed)
    : m_window(static_cast<xcb_window_t>(window.internalWinId())),
      m_pressed((pressed * window.devicePixelRatioF()).toPoint()) {}

void X11WindowMove::follow() {
    X11::configure(m_window, X11::pointer() - m_pressed);
}

} // namespace orvane
