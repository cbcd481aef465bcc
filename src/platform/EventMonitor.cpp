// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/EventMonitor.h"

#include "platform/X11.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QCursor>
#include <QEvent>

#include <xcb/xinput.h>

namespace orvane {

namespace {

/// Raw events come to whoever asks, without a grab, so the other programs miss nothing.
class GlobalPointerMonitor final : public QObject, QAbstractNativeEventFilter {
public:
    explicit GlobalPointerMonitor(EventMonitor::Handler handler) : m_handler(std::move(handler)) {
        // A request to an extension that is not there would end the connection.
        if (X11::connection() == nullptr || !hasXInput())
            return;
        select(XCB_INPUT_XI_EVENT_MASK_RAW_MOTION);
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    ~GlobalPointerMonitor() override {
        // After the application object has gone there is no connection either.
        if (QCoreApplication::instance() != nullptr && X11::connection() != nullptr && hasXInput())
            select(0);
    }

private:
    static const xcb_query_extension_reply_t& xInput() {
        return *xcb_get_extension_data(X11::connection(), &xcb_input_id);
    }

    static bool hasXInput() { return xInput().present != 0; }

    static void select(uint32_t events) {
        const struct {
            xcb_input_event_mask_t head;
            uint32_t events;
        } mask{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1}, .events = events};
        xcb_input_xi_select_events(X11::connection(), X11::root(), 1, &mask.head);
        xcb_flush(X11::connection());
    }

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override {
        if (type != "xcb_generic_event_t")
            return false;
        const auto* event = static_cast<const xcb_ge_generic_event_t*>(message);
        if ((event->response_type & 0x7f) != XCB_GE_GENERIC ||
            event->event_type != XCB_INPUT_RAW_MOTION || event->extension != xInput().major_opcode)
            return false;
        if (!m_isCallDue) {
            m_isCallDue = true;
            QMetaObject::invokeMethod(
                this,
                [this] {
                    m_isCallDue = false;
                    m_handler();
                },
                Qt::QueuedConnection);
        }
        return true;
    }

    EventMonitor::Handler m_handler;
    bool m_isCallDue = false;
};

class LocalPointerMonitor final : public QObject {
public:
    explicit LocalPointerMonitor(EventMonitor::Handler handler) : m_handler(std::move(handler)) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        // Only on its way to a window, not again to the widgets in it.
        const bool isOfPointer =
            event->type() == QEvent::MouseMove || event->type() == QEvent::Enter;
        if (isOfPointer && watched->isWindowType())
            m_handler();
        return false;
    }

private:
    EventMonitor::Handler m_handler;
};

/// Over other windows than X11's an XWayland server has the pointer over nothing, at the place
/// where it was seen last.
bool isOverAnX11Window() {
    const X11::Reply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
        X11::connection(), xcb_query_pointer(X11::connection(), X11::root()), nullptr));
    return reply && reply->child != XCB_WINDOW_NONE;
}

} // namespace

std::unique_ptr<QObject> SystemEventMonitor::addGlobalPointerMonitor(Handler handler) {
    return std::make_unique<GlobalPointerMonitor>(std::move(handler));
}

std::unique_ptr<QObject> SystemEventMonitor::addLocalPointerMonitor(Handler handler) {
    return std::make_unique<LocalPointerMonitor>(std::move(handler));
}

std::optional<QPointF> SystemEventMonitor::pointerLocation() const {
    if (X11::isXWayland() && !isOverAnX11Window())
        return std::nullopt;
    return QCursor::pos();
}

} // namespace orvane
