// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/X11FullScreenOwner.h"

#include "platform/windowing/x11/X11.h"

#include <QApplication>
#include <QWindow>

#include <algorithm>
#include <array>

namespace orvane {

namespace {

/// Milliseconds in which a window manager has minimised all windows that belong together.
constexpr qint64 windowManagerTime = 1000;

/// To watch one of these would take Qt's events of it away.
bool isOurs(xcb_window_t window) {
    return std::ranges::any_of(QGuiApplication::allWindows(), [window](QWindow* each) {
        return each->handle() != nullptr && each->winId() == window;
    });
}

bool isFullScreen(xcb_window_t window) {
    const auto states = X11::values(window, X11::atom("_NET_WM_STATE"), XCB_ATOM_ATOM);
    return std::ranges::find(states, X11::atom("_NET_WM_STATE_FULLSCREEN")) != states.end();
}

} // namespace

X11FullScreenOwner::X11FullScreenOwner(QWidget& window) : m_window(window) {
    // Qt receives the changes of the root window's properties already.
    qApp->installNativeEventFilter(this);
}

X11FullScreenOwner::~X11FullScreenOwner() {
    qApp->removeNativeEventFilter(this);
}

bool X11FullScreenOwner::hasOwner() const {
    return m_owner != XCB_WINDOW_NONE ||
           (m_sinceOwner.isValid() && !m_sinceOwner.hasExpired(windowManagerTime));
}

void X11FullScreenOwner::setEnabled(bool isEnabled) {
    m_isEnabled = isEnabled;
    followActiveWindow();
}

bool X11FullScreenOwner::nativeEventFilter(const QByteArray&, void* message, qintptr*) {
    constexpr uint8_t sentBit = 0x80;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & ~sentBit) != XCB_PROPERTY_NOTIFY || !m_isEnabled)
        return false;
    const auto* change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
    if (change->window == X11::root() && change->atom == X11::atom("_NET_ACTIVE_WINDOW"))
        followActiveWindow();
    else if (change->window == m_active && change->atom == X11::atom("_NET_WM_STATE"))
        update();
    return false;
}

void X11FullScreenOwner::followActiveWindow() {
    const auto windows = X11::values(X11::root(), X11::atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    const xcb_window_t active = windows.empty() ? xcb_window_t{XCB_WINDOW_NONE} : windows.front();
    // One's own windows leave things as they are: the full-screen window may still be behind them.
    if (isOurs(active))
        return;
    // Also for the same number, which the server may have given to a new window meanwhile.
    m_active = active;
    if (m_active != XCB_WINDOW_NONE) {
        const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(X11::connection(), m_active, XCB_CW_EVENT_MASK, &mask);
    }
    update();
}

void X11FullScreenOwner::update() {
    const bool isCovered = m_isEnabled && m_active != XCB_WINDOW_NONE && isFullScreen(m_active);
    const xcb_window_t owner = isCovered ? m_active : xcb_window_t{XCB_WINDOW_NONE};
    if (owner == m_owner || m_window.internalWinId() == 0)
        return;
    m_owner = owner;
    m_sinceOwner.start();
    const auto window = static_cast<xcb_window_t>(m_window.internalWinId());
    // Before the owner, which window managers look at once.
    announceKind();
    if (m_owner == XCB_WINDOW_NONE)
        xcb_delete_property(X11::connection(), window, XCB_ATOM_WM_TRANSIENT_FOR);
    else
        xcb_change_property(X11::connection(), XCB_PROP_MODE_REPLACE, window,
                            XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, 32, 1, &m_owner);
    xcb_flush(X11::connection());
}

void X11FullScreenOwner::announceKind() const {
    // Some window managers keep only dialogs above their owners. Tiling ones let a window float
    // that is a utility too. Qt's own list begins with a type that has openbox do nothing at all
    // for a window without a frame.
    const auto* first =
        m_owner == XCB_WINDOW_NONE ? "_NET_WM_WINDOW_TYPE_NORMAL" : "_NET_WM_WINDOW_TYPE_DIALOG";
    const std::array types{X11::atom(first), X11::atom("_NET_WM_WINDOW_TYPE_UTILITY")};
    xcb_change_property(X11::connection(), XCB_PROP_MODE_REPLACE,
                        static_cast<xcb_window_t>(m_window.internalWinId()),
                        X11::atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, types.size(),
                        types.data());
}

} // namespace orvane
