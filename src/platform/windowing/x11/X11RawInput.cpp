// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/x11/X11RawInput.h"

#include "base/Logging.h"
#include "platform/windowing/x11/X11.h"

#include <QCoreApplication>
#include <QMetaMethod>

#include <xcb/xinput.h>

namespace orvane {

namespace {

const xcb_query_extension_reply_t& xInput() {
    return *xcb_get_extension_data(X11::connection(), &xcb_input_id);
}

/// A request to a missing extension would close the connection.
bool hasXInput() {
    return QCoreApplication::instance() != nullptr && X11::connection() != nullptr &&
           xInput().present != 0;
}

} // namespace

X11RawInput::X11RawInput()
    : m_deferredSelect([this] { select(); }), m_deferredMove([this] { Q_EMIT pointerMoved(); }) {
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11RawInput::~X11RawInput() = default;

void X11RawInput::connectNotify(const QMetaMethod&) {
    select();
}

void X11RawInput::disconnectNotify(const QMetaMethod&) {
    // Deferred, because a receiver that is being destroyed holds one of the few locks that Qt
    // shares between all objects, and `isSignalConnected` may need the same one.
    m_deferredSelect.schedule();
}

void X11RawInput::select() {
    if (!hasXInput())
        return;
    std::uint32_t wanted = 0;
    if (isSignalConnected(QMetaMethod::fromSignal(&X11RawInput::pointerMoved)))
        wanted |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    if (wanted == m_selected)
        return;
    m_selected = wanted;
    qCInfo(logX11) << "raw input selected: mask" << Qt::hex << wanted;
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t events;
    } mask{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1}, .events = wanted};
    xcb_input_xi_select_events(X11::connection(), X11::root(), 1, &mask.head);
    xcb_flush(X11::connection());
}

bool X11RawInput::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t" || m_selected == 0)
        return false;
    const auto* event = static_cast<const xcb_ge_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_GE_GENERIC ||
        event->extension != xInput().major_opcode)
        return false;
    if (event->event_type != XCB_INPUT_RAW_MOTION)
        return false;
    m_deferredMove.schedule();
    return true;
}

} // namespace orvane
