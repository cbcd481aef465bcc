// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvTeardownQueue.h"

#include "platform/media/MpvInstance.h"
#include "platform/system/Memory.h"

#include <QCoroFuture>
#include <QPromise>

#include <mpv/client.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace orvane {

namespace {

/// Detects from events that a stopped instance is idle: it plays nothing and its video output is
/// closed.
class IdleDetector {
public:
    static constexpr const char* idle = "idle-active";
    static constexpr const char* drawing = "vo-configured";

    /// Takes the next event and returns whether the instance is idle.
    [[nodiscard]] bool handle(const mpv_event& event) {
        if (event.event_id == MPV_EVENT_PROPERTY_CHANGE) {
            const auto& property = *static_cast<const mpv_event_property*>(event.data);
            const std::string_view name = property.name;
            if (property.format == MPV_FORMAT_FLAG && (name == idle || name == drawing))
                (name == idle ? m_isIdle : m_isDrawing) =
                    *static_cast<const int*>(property.data) != 0;
        }
        return m_isIdle && !m_isDrawing;
    }

private:
    bool m_isIdle = false;
    bool m_isDrawing = true;
};

} // namespace

MpvTeardownQueue::MpvTeardownQueue() {
    m_destroyers.setMaxThreadCount(maximumCount);
    // The next player usually comes much later: an idle thread would only cost memory.
    m_destroyers.setExpiryTimeout(0);
}

MpvTeardownQueue::~MpvTeardownQueue() {
    m_destroyers.waitForDone();
}

void MpvTeardownQueue::enqueue(std::unique_ptr<MpvInstance> instance) {
    ++m_count;
    MpvInstance* stopping = instance.get();
    m_stopping.push_back(std::move(instance));

    // Freeing a renderer while mpv still draws blocks until mpv is done, and OpenGL's is freed on
    // the main thread. mpv in turn waits 200 ms for each frame that is not fetched.
    stopping->onRenderUpdate([stopping] { stopping->dropPendingFrame(); });
    stopping->dropPendingFrame();
    stopping->onEvent([this, stopping, detector = IdleDetector()](const mpv_event& event) mutable {
        if (detector.handle(event))
            QMetaObject::invokeMethod(
                this, [this, stopping] { destroyStopped(stopping); }, Qt::QueuedConnection);
    });
    stopping->command({"stop"});
    for (const char* property : {IdleDetector::idle, IdleDetector::drawing})
        mpv_observe_property(stopping->handle(), 0, property, MPV_FORMAT_FLAG);
}

void MpvTeardownQueue::destroyStopped(MpvInstance* instance) {
    const auto found = std::ranges::find(m_stopping, instance, &std::unique_ptr<MpvInstance>::get);
    if (found == m_stopping.end())
        return;
    const MpvInstance::Parts parts = instance->release();
    m_stopping.erase(found);
    m_destroyers.start([this, parts] {
        MpvInstance::free(parts);
        returnFreeMemory();
        QMetaObject::invokeMethod(
            this,
            [this] {
                --m_count;
                Q_EMIT changed();
            },
            Qt::QueuedConnection);
    });
}

QCoro::Task<> MpvTeardownQueue::room(std::stop_token stop) {
    return fewerThan(maximumCount, std::move(stop));
}

QCoro::Task<> MpvTeardownQueue::empty() {
    return fewerThan(1, std::stop_token());
}

QCoro::Task<> MpvTeardownQueue::fewerThan(int limit, std::stop_token stop) {
    if (m_count < limit || stop.stop_requested())
        co_return;
    QPromise<void> promise;
    promise.start();
    QObject context;
    connect(this, &MpvTeardownQueue::changed, &context, [this, limit, &promise] {
        if (m_count < limit)
            promise.finish();
    });
    const std::stop_callback onStop(stop, [&promise] { promise.finish(); });
    const QFuture<void> ready = promise.future();
    co_await ready;
}

} // namespace orvane
