// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/X11FloatingWindow.h"

#include "platform/windowing/FirstExposure.h"
#include "platform/windowing/ScreenPixels.h"
#include "platform/windowing/x11/X11.h"
#include "platform/windowing/x11/X11Geometry.h"

#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <xcb/shape.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace orvane {

namespace {

constexpr uint32_t allDesktops = 0xFFFFFFFF;
/// Wayland compositors decide about the focus with the first picture, of which X11 does not tell.
constexpr std::chrono::milliseconds waylandFocusDelay{500};
/// Pixels; window coordinates have 16 bits.
constexpr int beyondTheDesktop = 16384;
/// The states besides being above others, which Qt sets.
constexpr std::array states{"_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                            "_NET_WM_STATE_SKIP_PAGER"};

/// As Motif defined them, and window managers still read them.
namespace MotifHints {
constexpr uint32_t hasFunctions = 1U << 0;
constexpr uint32_t hasDecorations = 1U << 1;
constexpr uint32_t canResize = 1U << 1;
constexpr uint32_t canMove = 1U << 2;
constexpr uint32_t canMaximize = 1U << 4;
constexpr uint32_t canClose = 1U << 5;
} // namespace MotifHints

/// Returns the window and, from the inside out, the window manager's frames around it.
std::vector<xcb_window_t> windowAndFrames(xcb_window_t window) {
    std::vector<xcb_window_t> chain;
    while (window != XCB_WINDOW_NONE && window != X11::root()) {
        chain.push_back(window);
        const X11::Reply<xcb_query_tree_reply_t> reply(xcb_query_tree_reply(
            X11::connection(), xcb_query_tree(X11::connection(), window), nullptr));
        window = reply ? reply->parent : xcb_window_t{XCB_WINDOW_NONE};
    }
    return chain;
}

/// A request to a missing extension would close the connection.
bool hasShapes() {
    return xcb_get_extension_data(X11::connection(), &xcb_shape_id)->present != 0;
}

void emptyShape(xcb_window_t window, xcb_shape_sk_t kind) {
    xcb_shape_rectangles(X11::connection(), XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED,
                         window, 0, 0, 0, nullptr);
}

void resetShape(xcb_window_t window, xcb_shape_sk_t kind) {
    xcb_shape_mask(X11::connection(), XCB_SHAPE_SO_SET, kind, window, 0, 0, XCB_PIXMAP_NONE);
}

/// Whether a window that is unmapped is gone at once, and returns where it was. In a Wayland
/// session not every window manager knows hidden windows; one that does not fades their last
/// picture out, and moves them by the width of its shadows.
bool canWithdraw() {
    return X11::windowManagerSupports("_NET_WM_STATE_HIDDEN");
}

/// Whether the window has to stay mapped and leaves the desktop instead: compositors built on
/// wlroots, which all tell X11 this name, may give the keyboard to every window that appears, or
/// lose the click that follows the unmapping of one.
bool staysMapped() {
    return X11::windowManager() == "wlroots wm";
}

} // namespace

X11FloatingWindow::X11FloatingWindow(QWidget& window) : m_window(window) {
    if (X11::isXWayland())
        m_window.setAttribute(Qt::WA_TranslucentBackground);
    if (SwaySocket::isAvailable())
        m_sway.emplace();
    m_focusDelay.setSingleShot(true);
    QObject::connect(&m_focusDelay, &QTimer::timeout, &m_window, [this] {
        setAcceptsFocus(true);
        flush();
    });
    X11::logDesktop();
}

xcb_window_t X11FloatingWindow::id() const {
    return static_cast<xcb_window_t>(m_window.winId());
}

void X11FloatingWindow::aboutToShow() {
    // Some window managers give the focus to every window that appears, unless it takes none. Those
    // on X11 that know no task bars do not, or let rules say so; one of them reads this only once.
    if (X11::isXWayland() || X11::windowManagerSupports("_NET_WM_STATE_SKIP_TASKBAR"))
        setAcceptsFocus(false);
    addStates();
    m_fullScreenOwner.announceKind();
    forbidMinimizing();
    xcb_change_property(X11::connection(), XCB_PROP_MODE_REPLACE, id(),
                        X11::atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 32, 1, &allDesktops);
    if (!m_frameToShow)
        m_frameToShow = nativeFrame();
    m_isWithdrawn = false;
    m_focusDelay.stop();
}

void X11FloatingWindow::aboutToHide() {
    if (!m_isWithdrawn)
        m_frameToShow = nativeFrame();
}

void X11FloatingWindow::forbidMinimizing() {
    // No minimising: the window is in no task bar from which the user could bring it back.
    using namespace MotifHints;
    const std::array<uint32_t, 5> hints{hasFunctions | hasDecorations,
                                        canResize | canMove | canMaximize | canClose};
    const xcb_atom_t motif = X11::atom("_MOTIF_WM_HINTS");
    xcb_change_property(X11::connection(), XCB_PROP_MODE_REPLACE, id(), motif, motif, 32,
                        hints.size(), hints.data());
}

void X11FloatingWindow::addStates() {
    // Window managers remove the states of a hidden window, and Qt adds its own to those it finds.
    std::vector<xcb_atom_t> atoms = X11::values(id(), X11::atom("_NET_WM_STATE"), XCB_ATOM_ATOM);
    for (const auto* name : states) {
        if (std::ranges::find(atoms, X11::atom(name)) == atoms.end())
            atoms.push_back(X11::atom(name));
    }
    xcb_change_property(X11::connection(), XCB_PROP_MODE_REPLACE, id(), X11::atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, static_cast<uint32_t>(atoms.size()), atoms.data());
}

void X11FloatingWindow::requestStates() {
    // A window manager that handles the hiding of the window only now has removed what was set for
    // this showing. It gets these after the request to show.
    constexpr uint32_t add = 1;
    constexpr uint32_t fromApplication = 1;
    for (const auto* name : states)
        X11::ask(id(), "_NET_WM_STATE", {add, X11::atom(name), 0, fromApplication});
    X11::ask(id(), "_NET_WM_STATE", {add, X11::atom("_NET_WM_STATE_ABOVE"), 0, fromApplication});
    X11::ask(id(), "_NET_WM_DESKTOP", {allDesktops, fromApplication});
}

void X11FloatingWindow::shown() {
    requestStates();
    applySizeHints();
}

void X11FloatingWindow::setAcceptsFocus(bool accepts) {
    xcb_icccm_wm_hints_t hints{};
    xcb_icccm_get_wm_hints_reply(X11::connection(), xcb_icccm_get_wm_hints(X11::connection(), id()),
                                 &hints, nullptr);
    xcb_icccm_wm_hints_set_input(&hints, accepts ? 1 : 0);
    xcb_icccm_set_wm_hints(X11::connection(), id(), &hints);

    const xcb_atom_t protocols = X11::atom("WM_PROTOCOLS");
    const xcb_atom_t takeFocus = X11::atom("WM_TAKE_FOCUS");
    std::vector<xcb_atom_t> atoms = X11::values(id(), protocols, XCB_ATOM_ATOM);
    std::erase(atoms, takeFocus);
    if (accepts)
        atoms.push_back(takeFocus);
    xcb_change_property(X11::connection(), XCB_PROP_MODE_REPLACE, id(), protocols, XCB_ATOM_ATOM,
                        32, static_cast<uint32_t>(atoms.size()), atoms.data());
}

void X11FloatingWindow::appeared() {
    if (X11::isXWayland())
        m_focusDelay.start(waylandFocusDelay);
    else
        setAcceptsFocus(true);
    // Only where needed, because some window managers then forget the position of the window: where
    // Qt has set size increments or rounded the frame to whole points, and where the window manager
    // adds a frame of its own.
    const auto frame = std::exchange(m_frameToShow, std::nullopt);
    if (frame && (m_sway || *frame != nativeFrame()))
        place(*frame);
    flush();
}

void X11FloatingWindow::place(const QRect& frame) {
    // A request to the X server would have sway centre the window.
    if (m_sway && m_window.isVisible() && !m_isWithdrawn)
        m_sway->place(id(), frame);
    else
        X11::configure(id(), frame.topLeft(), frame.size());
}

void X11FloatingWindow::setSizeHints(QSize smallest, QSize narrowest, QSize widest) {
    m_smallest = smallest;
    m_narrowest = narrowest;
    m_widest = widest;
    applySizeHints();
}

// Qt overwrites the hints whenever it shows the window or sets its geometry: without aspect ratios,
// and at scale factors such as 1.5 with size increments that do not allow every frame.

void X11FloatingWindow::applySizeHints() {
    if (m_window.internalWinId() == 0)
        return;
    xcb_size_hints_t hints{};
    xcb_icccm_get_wm_normal_hints_reply(
        X11::connection(), xcb_icccm_get_wm_normal_hints(X11::connection(), id()), &hints, nullptr);
    hints.flags &= ~(XCB_ICCCM_SIZE_HINT_P_RESIZE_INC | XCB_ICCCM_SIZE_HINT_BASE_SIZE);
    const QSize pixels = (QSizeF(m_smallest) * m_window.devicePixelRatioF()).toSize();
    xcb_icccm_size_hints_set_min_size(&hints, pixels.width(), pixels.height());
    xcb_icccm_size_hints_set_aspect(&hints, m_narrowest.width(), m_narrowest.height(),
                                    m_widest.width(), m_widest.height());
    xcb_icccm_set_wm_normal_hints(X11::connection(), id(), &hints);
    xcb_flush(X11::connection());
}

QRect X11FloatingWindow::nativeFrame() const {
    return X11::frameOf(id());
}

QRectF X11FloatingWindow::frame() const {
    // A window that has not appeared may be on another screen for now.
    return m_frameToShow ? pointsOf(*m_frameToShow) : pointsOn(*m_window.screen(), nativeFrame());
}

void X11FloatingWindow::setFrame(const QRectF& frame) {
    const QRectF exact = pixelsOf(frame);
    const QRect pixels(exact.topLeft().toPoint(), exact.size().toSize());
    // The server's geometry lags behind: the window manager handles the request, also for a hidden
    // window, in its own time.
    if (!m_window.isVisible() || m_frameToShow)
        m_frameToShow = pixels;
    if (m_sway && m_window.isVisible()) {
        if (!m_isWithdrawn)
            place(pixels);
        return;
    }
    m_window.setGeometry(frame.toRect());
    if (m_window.internalWinId() == 0)
        return;
    applySizeHints();
    place(pixels);
}

bool X11FloatingWindow::mayBeDragged() const {
    return X11::isButtonHeld();
}

void X11FloatingWindow::moveBy(QWidget& window, QPointF distance) {
    if (SwaySocket::isAvailable())
        return; // It would centre the window.
    const auto id = static_cast<xcb_window_t>(window.winId());
    X11::configure(id,
                   X11::frameOf(id).topLeft() + (distance * window.devicePixelRatioF()).toPoint());
}

void X11FloatingWindow::setAcceptsPointer(bool accepts) {
    if (!hasShapes())
        return;
    // XWayland tells the compositor about the outermost window only, and not every window manager
    // there applies the shape to its frame.
    std::vector<xcb_window_t> windows{id()};
    if (X11::isXWayland())
        windows = windowAndFrames(id());
    for (const xcb_window_t window : windows) {
        if (accepts)
            resetShape(window, XCB_SHAPE_SK_INPUT);
        else
            emptyShape(window, XCB_SHAPE_SK_INPUT);
    }
    xcb_flush(X11::connection());
}

void X11FloatingWindow::setVanished(bool vanished) {
    if (X11::isXWayland()) {
        if (!vanished)
            comeBack();
        else if (canWithdraw() && !m_window.isFullScreen())
            withdraw();
        return;
    }
    // mutter gives the keyboard to the window under the pointer, whatever its shape.
    setAcceptsFocus(!vanished);
    setShapeEmpty(vanished); // Its shadow goes with its shape.
}

void X11FloatingWindow::setShapeEmpty(bool isEmpty) {
    if (!hasShapes())
        return;
    if (isEmpty)
        emptyShape(id(), XCB_SHAPE_SK_BOUNDING);
    else
        resetShape(id(), XCB_SHAPE_SK_BOUNDING);
    xcb_flush(X11::connection());
}

// In a Wayland session a click goes where the compositor sees a window, and not every one knows
// where X11 windows accept the pointer. So the window goes altogether, behind Qt's back, for which
// it stays open.

void X11FloatingWindow::withdraw() {
    if (m_isWithdrawn || !m_window.isVisible())
        return;
    const QRect frame = nativeFrame();
    m_frameToShow = frame;
    if (staysMapped()) {
        place(frame.translated(0, beyondTheDesktop));
    } else {
        xcb_unmap_window(X11::connection(), id());
        flush();
    }
    m_isWithdrawn = true;
}

void X11FloatingWindow::comeBack() {
    if (!m_isWithdrawn)
        return;
    if (staysMapped()) {
        m_isWithdrawn = false;
        if (const auto frame = std::exchange(m_frameToShow, std::nullopt))
            place(*frame);
        return;
    }
    aboutToShow();
    constexpr uint32_t never = 0;
    xcb_change_property(X11::connection(), XCB_PROP_MODE_REPLACE, id(),
                        X11::atom("_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, 32, 1, &never);
    xcb_map_window(X11::connection(), id());
    shown();
    new FirstExposure(m_window.windowHandle(), [this] { appeared(); });
}

void X11FloatingWindow::flush() {
    xcb_flush(X11::connection());
}

} // namespace orvane
