// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/FloatingWindow.h"
#include "platform/windowing/X11FullScreenOwner.h"
#include "platform/windowing/sway/SwayPlacement.h"

#include <QRect>
#include <QSize>
#include <QTimer>

#include <xcb/xcb.h>

#include <optional>

class QWidget;

namespace orvane {

/// `FloatingWindow` for X11, with EWMH and ICCCM hints and window shapes. In a Wayland session the
/// window gets an alpha channel, because not every compositor there supports opacity or shapes.
class X11FloatingWindow final : public FloatingWindow {
public:
    explicit X11FloatingWindow(QWidget& window);

    /// Moves the window behind Qt's back: Qt would otherwise tell the window manager a pointer
    /// position that is off by `distance`.
    static void moveBy(QWidget& window, QPointF distance);

    void aboutToShow() override;
    void aboutToHide() override;
    void shown() override;
    void appeared() override;
    void setAboveFullScreen(bool isAbove) override { m_fullScreenOwner.setEnabled(isAbove); }
    [[nodiscard]] bool followsFullScreen() const override { return m_fullScreenOwner.hasOwner(); }
    void setSizeHints(QSize smallest, QSize narrowest, QSize widest) override;
    [[nodiscard]] QRectF frame() const override;
    void setFrame(const QRectF& frame) override;
    [[nodiscard]] bool mayBeDragged() const override;
    void setAcceptsPointer(bool accepts) override;
    void setVanished(bool vanished) override;
    void flush() override;

private:
    [[nodiscard]] xcb_window_t id() const;
    /// Pixels.
    [[nodiscard]] QRect nativeFrame() const;

    void addStates();
    void requestStates();
    void forbidMinimizing();
    void setAcceptsFocus(bool accepts);
    void applySizeHints();
    void setShapeEmpty(bool isEmpty);
    void withdraw();
    void comeBack();

    /// Pixels.
    void place(const QRect& frame);

    QWidget& m_window;
    std::optional<SwayPlacement> m_sway;
    X11FullScreenOwner m_fullScreenOwner{m_window};
    QSize m_smallest;
    QSize m_narrowest;
    QSize m_widest;
    /// Pixels. Set while the window is hidden, until it appears.
    std::optional<QRect> m_frameToShow;
    bool m_isWithdrawn = false;
    /// Runs from the appearance of the window until it accepts the focus.
    QTimer m_focusDelay;
};

} // namespace orvane
