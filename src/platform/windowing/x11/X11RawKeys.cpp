// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/x11/X11RawKeys.h"

#include "base/Logging.h"
#include "platform/windowing/x11/X11.h"
#include "platform/windowing/x11/X11Keyboard.h"
#include "platform/windowing/x11/XkbProtocol.h"

#include <QMetaMethod>

#include <xcb/xinput.h>

namespace orvane {

namespace {

/// A raw event can be missed, the release of a key during a grab for example.
bool isDown(std::uint32_t key) {
    const X11::Reply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(X11::connection(), xcb_query_keymap(X11::connection()), nullptr));
    return reply && key / 8 < sizeof reply->keys && (reply->keys[key / 8] >> key % 8 & 1) != 0;
}

} // namespace

X11RawKeys::X11RawKeys() {
    connect(&m_repetition, &QTimer::timeout, this, &X11RawKeys::repeat);
}

X11RawKeys::~X11RawKeys() = default;

void X11RawKeys::connectNotify(const QMetaMethod&) {
    if (!m_connection && X11::connection() != nullptr)
        open();
}

void X11RawKeys::disconnectNotify(const QMetaMethod&) {
    // Queued, because a receiver that is being destroyed holds one of the few locks that Qt shares
    // between all objects, and `isSignalConnected` may need the same one.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!isSignalConnected(QMetaMethod::fromSignal(&X11RawKeys::pressed)))
                close();
        },
        Qt::QueuedConnection);
}

void X11RawKeys::open() {
    m_connection.reset(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(m_connection.get()) != 0 || !select()) {
        qCWarning(logX11) << "no raw keys from the X server";
        m_connection.reset();
        return;
    }
    qCInfo(logX11) << "raw keys selected";
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11RawKeys::read);
}

void X11RawKeys::close() {
    m_repetition.stop();
    m_notifier.reset();
    if (m_connection)
        qCInfo(logX11) << "raw keys no longer selected";
    m_connection.reset();
}

bool X11RawKeys::select() {
    xcb_connection_t* server = m_connection.get();
    const auto* input = xcb_get_extension_data(server, &xcb_input_id);
    const auto* xkb = xcb_get_extension_data(server, &xcb_xkb_id);
    if (input->present == 0 || xkb->present == 0)
        return false;
    m_xInput = input->major_opcode;
    m_xkbEvent = xkb->first_event;
    const X11::Reply<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        server, xcb_input_xi_query_version(server, 2, 0), nullptr));
    const X11::Reply<xcb_xkb_use_extension_reply_t> use(xcb_xkb_use_extension_reply(
        server, xcb_xkb_use_extension(server, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION),
        nullptr));
    const X11::Reply<xcb_xkb_get_state_reply_t> state(xcb_xkb_get_state_reply(
        server, xcb_xkb_get_state(server, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!version || !use || !state)
        return false;
    m_state = X11Keyboard::coreState(state->mods, state->group);
    // The state and the keys come in the order in which they happened, as they share a connection.
    constexpr std::uint16_t states = XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    xcb_xkb_select_events(server, XCB_XKB_ID_USE_CORE_KBD, states, 0, states, 0, 0, nullptr);
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t events;
    } mask{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
           .events =
               XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE};
    xcb_input_xi_select_events(server, X11::root(), 1, &mask.head);
    xcb_flush(server);
    return true;
}

void X11RawKeys::read() {
    // A handler may end the watching.
    while (m_connection) {
        const X11::Reply<xcb_generic_event_t> event(xcb_poll_for_event(m_connection.get()));
        if (!event)
            break;
        handle(*event);
    }
    if (m_connection && xcb_connection_has_error(m_connection.get()) != 0)
        close();
}

void X11RawKeys::handle(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7f;
    if (type == m_xkbEvent) {
        const auto& notify = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        if (notify.xkbType == XCB_XKB_STATE_NOTIFY)
            m_state = X11Keyboard::coreState(notify.mods, notify.group);
        return;
    }
    const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
    if (type != XCB_GE_GENERIC || raw.extension != m_xInput)
        return;
    if (raw.event_type == XCB_INPUT_RAW_KEY_PRESS) {
        m_heldKey = raw.detail;
        m_repetition.start(X11Keyboard::repetition().delay);
        Q_EMIT pressed(raw.detail, m_state, false);
    } else if (raw.event_type == XCB_INPUT_RAW_KEY_RELEASE && raw.detail == m_heldKey) {
        m_repetition.stop();
    }
}

void X11RawKeys::repeat() {
    if (!isDown(m_heldKey))
        return m_repetition.stop();
    m_repetition.setInterval(X11Keyboard::repetition().interval);
    Q_EMIT pressed(m_heldKey, m_state, true);
}

} // namespace orvane
