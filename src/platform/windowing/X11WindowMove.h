// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/WindowMove.h"

#include <QPoint>

#include <xcb/xcb.h>

namespace orvane {

/// `WindowMove` for X11, in pixels and behind Qt's back: Qt would move and resize a window back and
/// forth that crosses to a screen of another scale.
class X11WindowMove final : public WindowMove {
public:
    explicit X11WindowMove(const QWidget& window);

    void follow() override;

private:
    xcb_window_t m_window;
    /// From the pointer to the corner of the window.
    QPoint m_offset;
};

} // namespace orvane
