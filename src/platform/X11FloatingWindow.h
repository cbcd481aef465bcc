// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FloatingWindow.h"

#include <QPoint>
#include <QRect>

#include <xcb/xcb.h>

namespace orvane {

/// `FloatingWindow` for an X server, by the hints of EWMH and ICCCM and by window shapes. In a
/// Wayland session the window gets an alpha channel, because not every compositor there knows
/// opacity or shapes.
class X11FloatingWindow final : public FloatingWindow {
public:
    explicit X11FloatingWindow(QWidget& window);

    void aboutToShow() override;
    void setSizeHints(QSize smallest, QSize ratio) override;
    [[nodiscard]] QRectF frame() const override;
    void setFrame(const QRectF& frame) override;
    void setInputArea(InputArea area, double ringWidth) override;
    [[nodiscard]] Concealment concealment() const override;
    void setShapeEmpty(bool isEmpty) override;

private:
    [[nodiscard]] xcb_window_t id() const;
    /// Pixels; where its upper left corner is in `window`.
    [[nodiscard]] QPoint cornerIn(xcb_window_t window) const;
    /// Pixels.
    [[nodiscard]] QRect nativeFrame() const;

    QWidget& m_window;
};

} // namespace orvane
