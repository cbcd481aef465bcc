// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/x11/X11Keyboard.h"

#include "platform/windowing/x11/X11.h"
#include "platform/windowing/x11/XkbProtocol.h"

#include <QCoreApplication>

#include <xkbcommon/xkbcommon-x11.h>

namespace orvane {

namespace {

// The bits of the core protocol's state that hold the number of the layout.
constexpr int layoutShift = 13;
constexpr std::uint32_t layoutMask = 3;
constexpr std::uint32_t modifierMask = 0xff;

KeyboardLayouts::Keymap currentKeymap() {
    xcb_connection_t* connection = X11::connection();
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    if (device < 0)
        return nullptr;
    return KeyboardLayouts::Keymap(xkb_x11_keymap_new_from_device(
        KeyboardLayouts::context(), connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

} // namespace

X11Keyboard::X11Keyboard() {
    if (X11::connection() != nullptr && select())
        QCoreApplication::instance()->installNativeEventFilter(this);
}

X11Keyboard::~X11Keyboard() = default;

std::uint32_t X11Keyboard::coreState(std::uint32_t modifiers, std::uint32_t layout) {
    return (modifiers & modifierMask) | ((layout & layoutMask) << layoutShift);
}

bool X11Keyboard::select() {
    xcb_connection_t* connection = X11::connection();
    if (xkb_x11_setup_xkb_extension(
            connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &m_eventType, nullptr) == 0)
        return false;
    constexpr std::uint16_t events =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t parts =
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, parts, parts,
                          nullptr);
    return true;
}

KeyEvent X11Keyboard::keyEvent(std::uint32_t key, std::uint32_t state) {
    if (!m_layouts)
        m_layouts.emplace(m_eventType != 0 ? currentKeymap() : nullptr);
    const std::uint32_t layout = (state >> layoutShift) & layoutMask;
    return {.keyCode = m_layouts->keyCode(key),
            .modifierFlags = modifierFlags(state),
            .charactersIgnoringModifiers = m_layouts->charactersIgnoringModifiers(key, layout)};
}

X11Keyboard::Repetition X11Keyboard::repetition() {
    xcb_connection_t* connection = X11::connection();
    if (xcb_get_extension_data(connection, &xcb_xkb_id)->present == 0)
        return {};
    const X11::Reply<xcb_xkb_get_controls_reply_t> controls(xcb_xkb_get_controls_reply(
        connection, xcb_xkb_get_controls(connection, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!controls || controls->repeatDelay == 0 || controls->repeatInterval == 0)
        return {};
    return {.delay = std::chrono::milliseconds(controls->repeatDelay),
            .interval = std::chrono::milliseconds(controls->repeatInterval)};
}

bool X11Keyboard::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_xkb_state_notify_event_t*>(message);
    if ((event->response_type & 0x7f) != m_eventType)
        return false;
    if (event->xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY || event->xkbType == XCB_XKB_MAP_NOTIFY)
        m_layouts.reset();
    return false;
}

} // namespace orvane
