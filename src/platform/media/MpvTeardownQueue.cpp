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

MpvTeardownQueue::MpvTeardownQueue() {}

MpvTeardownQueue::~MpvTeardownQueue() {
    m_destroyers.waitForDone();
}

void MpvTeardownQueue::enqueue(std::unique_ptr<MpvInstance> instance, Share share,
                               std::function<void()> whenDestroyed) {
    MpvInstance* stopping = instance.get();
    m_entries.push_back({.instance = std::move(instance),
                         .share = share,
                         .whenDestroyed = std::move(whenDestroyed)});

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

void MpvTeardownQueue::setAside() {
    for (Entry& entry : m_entries)
        entry.share = Share::none;
    Q_EMIT changed();
}

void MpvTeardownQueue::destroyStopped(const MpvInstance* instance) {
    const auto entry = std::ranges::find_if(
        m_entries, [&](const Entry& e) { return e.instance.get() == instance; });
    if (entry == m_entries.end())
        return;
    const MpvInstance::Parts parts = entry->instance->release();
    entry->instance.reset();
    m_destroyers.start([this, parts, entry] {
        MpvInstance::free(parts);
        returnFreeMemory();
        QMetaObject::invokeMethod(this, [this, entry] { destroyed(entry); }, Qt::QueuedConnection);
    });
}

void MpvTeardownQueue::destroyed(Entries::iterator entry) {
    const std::function<void()> whenDestroyed = std::move(entry->whenDestroyed);
    m_entries.erase(entry);
    if (whenDestroyed)
        whenDestroyed();
    Q_EMIT changed();
}

bool MpvTeardownQueue::hasRoom() const {
    return std::ranges::count(m_entries, Share::place, &Entry::share) < maximumCount;
}

QCoro::Task<> MpvTeardownQueue::room(std::stop_token stop) {
    return until([this] { return hasRoom(); }, std::move(stop));
}

QCoro::Task<> MpvTeardownQueue::empty() {
    return until([this] { return m_entries.empty(); }, std::stop_token());
}

QCoro::Task<> MpvTeardownQueue::until(std::function<bool()> condition, std::stop_token stop) {
    if (condition() || stop.stop_requested())
        co_return;
    QPromise<void> promise;
    promise.start();
    QObject context;
    connect(this, &MpvTeardownQueue::changed, &context, [&condition, &promise] {
        if (condition())
            promise.finish();
    });
    const std::stop_callback onStop(stop, [&promise] { promise.finish(); });
    const QFuture<void> ready = promise.future();
    co_await ready;
}

} // namespace orvane
