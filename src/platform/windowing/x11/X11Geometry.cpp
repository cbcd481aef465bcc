// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/x11/X11Geometry.h"

#include "platform/windowing/x11/X11.h"

namespace orvane::X11 {

namespace {

Reply<xcb_get_geometry_reply_t> geometry(xcb_window_t window) {
    return Reply<xcb_get_geometry_reply_t>(
        xcb_get_geometry_reply(connection(), xcb_get_geometry(connection(), window), nullptr));
}

Reply<xcb_query_pointer_reply_t> queryPointer() {
    return Reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer_reply(connection(), xcb_query_pointer(connection(), root()), nullptr));
}

} // namespace

QRect frameOf(xcb_window_t window) {
    const auto size = geometry(window);
    const Reply<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(
        connection(), xcb_translate_coordinates(connection(), window, root(), 0, 0), nullptr));
    if (!size || !corner)
        return {};
    return {corner->dst_x, corner->dst_y, size->width, size->height};
}

void configure(xcb_window_t window, QPoint corner, std::optional<QSize> size) {
    // Some window managers give the window itself a border, in place of a frame around it.
    const auto now = geometry(window);
    const int border = now ? now->border_width : 0;
    xcb_configure_window_value_list_t values{.x = corner.x() - border, .y = corner.y() - border};
    uint16_t mask = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y;
    if (size) {
        values.width = static_cast<uint32_t>(size->width());
        values.height = static_cast<uint32_t>(size->height());
        mask |= XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    }
    xcb_configure_window_aux(connection(), window, mask, &values);
    xcb_flush(connection());
}

QPoint pointer() {
    const auto reply = queryPointer();
    return reply ? QPoint(reply->root_x, reply->root_y) : QPoint();
}

bool isPointerKnown() {
    if (!isXWayland())
        return true;
    // Over a native Wayland window XWayland reports the last known position and no window below it,
    // or an invisible one with which the compositor guards the desktop.
    const auto pointed = queryPointer();
    if (!pointed || pointed->child == XCB_WINDOW_NONE)
        return false;
    const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection(), xcb_get_window_attributes(connection(), pointed->child), nullptr));
    return attributes && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}

bool isButtonHeld() {
    // XWayland misses the release after a compositor has moved a window.
    if (connection() == nullptr || isXWayland())
        return false;
    const auto reply = queryPointer();
    return reply && (reply->mask & XCB_BUTTON_MASK_1) != 0;
}

} // namespace orvane::X11
