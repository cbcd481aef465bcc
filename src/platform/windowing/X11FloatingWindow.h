// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/FloatingWindow.h"

#include <QRect>
#include <QSize>

#include <xcb/xcb.h>

#include <optional>

namespace orvane {

/// `FloatingWindow` for an X server, by the hints of EWMH and ICCCM and by window shapes. In a
/// Wayland session the window gets an alpha channel, because not every compositor there knows
/// opacity or shapes.
class X11FloatingWindow final : public FloatingWindow {
public:
    explicit X11FloatingWindow(QWidget& window);

    /// Without the toolkit's knowing at once: it would tell the window manager a place of the
    /// pointer that has been moved along.
    static void moveBy(QWidget& window, QPointF distance);

    void aboutToShow() override;
    void shown() override;
    void setSizeHints(QSize smallest, QSize narrowest, QSize widest) override;
    [[nodiscard]] QRectF frame() const override;
    void setFrame(const QRectF& frame) override;
    void setInputArea(InputArea area, double ringWidth) override;
    [[nodiscard]] Concealment concealment() const override;
    void setShapeEmpty(bool isEmpty) override;
    void flush() override;

private:
    [[nodiscard]] xcb_window_t id() const;
    /// Pixels.
    [[nodiscard]] QRect nativeFrame() const;

    void applySizeHints();

    QWidget& m_window;
    QSize m_smallest;
    QSize m_narrowest;
    QSize m_widest;
    /// Pixels; while the window is not shown and has been given a frame, or is being shown.
    std::optional<QRect> m_frameToShow;
};

} // namespace orvane
