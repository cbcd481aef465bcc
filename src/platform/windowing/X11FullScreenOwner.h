// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>
#include <QElapsedTimer>
#include <QWidget>

#include <xcb/xcb.h>

namespace orvane {

/// Keeps a window above another program's full-screen window, which covers windows that are only
/// above others on many desktops: while that window is the active one, it is made the owner of this
/// one, and window managers keep windows above their owners. Owned by the floating window; main
/// thread. A lock screen that no window manager manages is never the active window.
class X11FullScreenOwner final : private QAbstractNativeEventFilter {
public:
    /// The window outlives this.
    explicit X11FullScreenOwner(QWidget& window);
    ~X11FullScreenOwner() override;
    X11FullScreenOwner(const X11FullScreenOwner&) = delete;
    X11FullScreenOwner& operator=(const X11FullScreenOwner&) = delete;

    void setEnabled(bool isEnabled);
    /// To be called before the window is shown; tells of its type, which depends on the owner.
    void announceKind() const;
    /// Whether the window has an owner, which takes it along when it is minimised, or had one just
    /// now: some window managers first activate another window.
    [[nodiscard]] bool hasOwner() const;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void followActiveWindow();
    void update();

    QWidget& m_window;
    bool m_isEnabled = false;
    /// The active window of another program, and the owner.
    xcb_window_t m_active = XCB_WINDOW_NONE;
    xcb_window_t m_owner = XCB_WINDOW_NONE;
    QElapsedTimer m_sinceOwner;
};

} // namespace orvane
