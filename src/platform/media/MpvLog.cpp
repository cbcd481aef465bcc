// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvLog.h"

#include "base/Logging.h"

#include <mpv/client.h>

namespace orvane {

MpvLog::MpvLog() {
    m_handle = mpv_create();
    if (m_handle == nullptr) {
        qCWarning(logPlayer, "Cannot create mpv's log handle");
        return;
    }
    mpv_request_log_messages(m_handle, "warn");
    mpv_set_wakeup_callback(
        m_handle, [](void* call) { static_cast<DeferredCall*>(call)->schedule(); },
        &m_linesArrived);
}

MpvLog::~MpvLog() {
    if (m_handle == nullptr)
        return;
    mpv_set_wakeup_callback(m_handle, nullptr, nullptr);
    mpv_terminate_destroy(m_handle);
}

void MpvLog::drain() {
    while (m_handle != nullptr) {
        const mpv_event* event = mpv_wait_event(m_handle, 0);
        if (event->event_id == MPV_EVENT_NONE)
            break;
        if (event->event_id == MPV_EVENT_LOG_MESSAGE) {
            const auto* message = static_cast<const mpv_event_log_message*>(event->data);
            const QString text = QString::fromUtf8(message->text);
            qCWarning(logPlayer, "mpv: %s: %s", message->prefix,
                      qUtf8Printable(withoutSecrets(text.trimmed())));
            Q_EMIT line(text);
        }
    }
}

} // namespace orvane
