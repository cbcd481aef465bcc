// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/WindowMove.h"

#include <QPoint>
#include <QPointF>

#include <xcb/xcb.h>

class QWidget;

namespace orvane {

/// `WindowMove` for X11, in pixels and behind Qt's back: Qt would move and resize a window back and
/// forth that crosses to a screen of another scale.
class X11WindowMove final : public WindowMove {
public:
    /// `pressed` is where the pointer is to stay, in points within the window.
    X11WindowMove(const QWidget& window, QPointF pressed);

    void follow() override;

private:
    xcb_window_t m_window;
    QPoint m_pressed;
};

} // namespace orvane
