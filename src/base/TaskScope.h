// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QFuture>
#include <QPromise>

#include <memory>

namespace orvane {

/// Keeps count of coroutines that nobody awaits, so that the program can end after the last of them
/// instead of in the middle. It does not stop them: whoever started one stops it. Owned by the
/// composition root, which joins it before it goes; main thread.
class TaskScope {
public:
    TaskScope() = default;
    TaskScope(const TaskScope&) = delete;
    TaskScope& operator=(const TaskScope&) = delete;

    void spawn(QCoro::Task<> task);

    /// Ends when no task is left, those that are spawned meanwhile included.
    [[nodiscard]] QCoro::Task<> join();

    [[nodiscard]] int count() const { return m_count; }

private:
    QCoro::Task<> watch(QCoro::Task<> task);

    int m_count = 0;
    std::unique_ptr<QPromise<void>> m_idle;
};

} // namespace orvane
