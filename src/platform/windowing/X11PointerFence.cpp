// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/X11PointerFence.h"

#include "platform/windowing/ScreenPixels.h"
#include "platform/windowing/x11/X11.h"
#include "platform/windowing/x11/X11Geometry.h"

#include <QGuiApplication>
#include <QScreen>

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace orvane {

namespace {

constexpr std::uint8_t depthWithAlpha = 32;

xcb_screen_t& x11Screen() {
    return *xcb_setup_roots_iterator(xcb_get_setup(X11::connection())).data;
}

/// Returns 0 where the server has none.
xcb_visualid_t visualWithAlpha() {
    for (auto depths = xcb_screen_allowed_depths_iterator(&x11Screen()); depths.rem != 0;
         xcb_depth_next(&depths)) {
        if (depths.data->depth == depthWithAlpha && depths.data->visuals_len != 0)
            return xcb_depth_visuals(depths.data)->visual_id;
    }
    return 0;
}

} // namespace

X11PointerFence::X11PointerFence(const QRectF& area) : m_area(area) {
    QCoreApplication::instance()->installNativeEventFilter(this);
    build();
    connect(QGuiApplication::primaryScreen(), &QScreen::virtualGeometryChanged, this, [this] {
        remove();
        build();
    });
}

X11PointerFence::~X11PointerFence() {
    remove();
}

void X11PointerFence::build() {
    // The desktop's size changes while the program runs.
    const QRect whole = X11::frameOf(X11::root());
    const QRect hole = pixelsOf(m_area).toAlignedRect() & whole;
    m_colormap = xcb_generate_id(X11::connection());
    xcb_create_colormap(X11::connection(), XCB_COLORMAP_ALLOC_NONE, m_colormap, X11::root(),
                        visualWithAlpha());
    const int right = hole.x() + hole.width();
    const int bottom = hole.y() + hole.height();
    for (const QRect& frame : {QRect(0, 0, whole.width(), hole.y()),
                               QRect(0, bottom, whole.width(), whole.height() - bottom),
                               QRect(0, hole.y(), hole.x(), hole.height()),
                               QRect(right, hole.y(), whole.width() - right, hole.height())}) {
        if (!frame.isEmpty())
            addWindow(frame);
    }
    xcb_flush(X11::connection());
}

void X11PointerFence::addWindow(const QRect& frame) {
    const xcb_window_t window = xcb_generate_id(X11::connection());
    const xcb_create_window_value_list_t values{
        .background_pixel = 0,
        .border_pixel = 0,
        .override_redirect = 1,
        .event_mask = XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_POINTER_MOTION |
                      XCB_EVENT_MASK_BUTTON_PRESS,
        .colormap = m_colormap,
    };
    xcb_create_window_aux(
        X11::connection(), depthWithAlpha, window, X11::root(), static_cast<int16_t>(frame.x()),
        static_cast<int16_t>(frame.y()), static_cast<uint16_t>(frame.width()),
        static_cast<uint16_t>(frame.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visualWithAlpha(),
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK |
            XCB_CW_COLORMAP,
        &values);
    // Some compositors give the keyboard to windows of an unknown kind that they do not manage.
    const xcb_atom_t kind = X11::atom("_NET_WM_WINDOW_TYPE_DND");
    xcb_change_property(X11::connection(), XCB_PROP_MODE_REPLACE, window,
                        X11::atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &kind);
    xcb_icccm_wm_hints_t hints{};
    xcb_icccm_wm_hints_set_input(&hints, 0);
    xcb_icccm_set_wm_hints(X11::connection(), window, &hints);
    xcb_map_window(X11::connection(), window);
    m_windows.push_back(window);
}

void X11PointerFence::remove() {
    for (const xcb_window_t window : m_windows)
        xcb_destroy_window(X11::connection(), window);
    m_windows.clear();
    xcb_free_colormap(X11::connection(), m_colormap);
    xcb_flush(X11::connection());
}

bool X11PointerFence::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    xcb_window_t window = XCB_WINDOW_NONE;
    switch (event->response_type & 0x7f) {
    case XCB_ENTER_NOTIFY:
        window = reinterpret_cast<const xcb_enter_notify_event_t*>(event)->event;
        break;
    case XCB_MOTION_NOTIFY:
    case XCB_BUTTON_PRESS:
        window = reinterpret_cast<const xcb_button_press_event_t*>(event)->event;
        break;
    default:
        return false;
    }
    if (std::ranges::find(m_windows, window) == m_windows.end())
        return false;
    remove();
    QMetaObject::invokeMethod(this, &X11PointerFence::entered, Qt::QueuedConnection);
    return true;
}

} // namespace orvane
