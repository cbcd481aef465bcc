// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/FloatingWindowFactory.h"

#include "platform/windowing/X11FloatingWindow.h"
#include "platform/windowing/X11WindowMove.h"
#include "platform/windowing/x11/X11.h"

#include <QCursor>
#include <QWidget>
#include <QWindow>

namespace orvane {

namespace {

/// For platforms other than X11.
class PlainWindow final : public FloatingWindow {
public:
    explicit PlainWindow(QWidget& window) : m_window(window) {}

    void aboutToShow() override {}
    void aboutToHide() override {}
    void shown() override {}
    void appeared() override {}
    void setAboveFullScreen(bool) override {}
    [[nodiscard]] bool followsFullScreen() const override { return false; }
    void setSizeHints(QSize, QSize, QSize) override {}
    [[nodiscard]] QRectF frame() const override { return m_window.geometry(); }
    void setFrame(const QRectF& frame) override { m_window.setGeometry(frame.toRect()); }
    [[nodiscard]] bool mayBeDragged() const override { return false; }
    void setAcceptsPointer(bool) override {}
    void setVanished(bool) override {}
    void flush() override {}

private:
    QWidget& m_window;
};

class PlainMove final : public WindowMove {
public:
    PlainMove(QWidget& window, QPointF pressed) : m_window(window), m_pressed(pressed.toPoint()) {}

    void follow() override { m_window.move(QCursor::pos() - m_pressed); }

private:
    QWidget& m_window;
    QPoint m_pressed;
};

} // namespace

std::unique_ptr<FloatingWindow> makeFloatingWindow(QWidget& window) {
    if (X11::connection() == nullptr)
        return std::make_unique<PlainWindow>(window);
    return std::make_unique<X11FloatingWindow>(window);
}

std::unique_ptr<WindowMove> startWindowMove(QWidget& window, QPointF pressed, QPointF now) {
    const bool isX11 = X11::connection() != nullptr;
    if (isX11)
        X11FloatingWindow::moveBy(window, now - pressed);
    if (window.windowHandle()->startSystemMove())
        return nullptr;
    if (!isX11)
        return std::make_unique<PlainMove>(window, pressed);
    return std::make_unique<X11WindowMove>(window, pressed);
}

} // namespace orvane
