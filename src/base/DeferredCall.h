// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <atomic>
#include <functional>

namespace orvane {

/// Calls a function once from the event loop, however often it was scheduled in the meantime. A
/// member of the class whose function it calls; lives on the thread that runs the function. Makes
/// no call after it has been destroyed.
class DeferredCall final : public QObject {
public:
    explicit DeferredCall(std::function<void()> function) : m_function(std::move(function)) {}

    /// Any thread. Scheduling during the call results in another call.
    void schedule() {
        if (m_isScheduled.exchange(true))
            return;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_isScheduled = false;
                m_function();
            },
            Qt::QueuedConnection);
    }

private:
    const std::function<void()> m_function;
    std::atomic_bool m_isScheduled = false;
};

} // namespace orvane
