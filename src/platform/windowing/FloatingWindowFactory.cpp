// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/FloatingWindowFactory.h"

#include "platform/windowing/X11FloatingWindow.h"
#include "platform/windowing/x11/X11.h"

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
    void setAcceptsPointer(bool) override {}
    void setVanished(bool) override {}
    void flush() override {}

private:
    QWidget& m_window;
};

} // namespace

std::unique_ptr<FloatingWindow> makeFloatingWindow(QWidget& window) {
    if (X11::connection() == nullptr)
        return std::make_unique<PlainWindow>(window);
    return std::make_unique<X11FloatingWindow>(window);
}

bool startWindowMove(QWidget& window, QPointF distance) {
    if (X11::connection() != nullptr)
        X11FloatingWindow::moveBy(window, distance);
    return window.windowHandle()->startSystemMove();
}

} // namespace orvane
