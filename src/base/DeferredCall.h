// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <atomic>
#include <functional>

namespace orvane {

/// Calls a function once from the event loop, however often that was asked for meanwhile. A member
/// of whoever is called; lives on the thread on which the function is to run. Nothing is called
/// after it is gone.
class DeferredCall final : public QObject {
public:
    explicit DeferredCall(std::function<void()> function) : m_function(std::move(function)) {}

    /// Any thread. What is scheduled during the call makes another call.
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
