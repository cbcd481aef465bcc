// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QFuture>
#include <QPromise>

#include <memory>

namespace orvane {

/// Counts the coroutines that run without being awaited, so that the program can wait for them
/// before it exits. It does not stop them: the class that started one must do so. Owned by the
/// composition root, which joins it before destroying it; main thread.
class TaskScope {
public:
    TaskScope() = default;
    TaskScope(const TaskScope&) = delete;
    TaskScope& operator=(const TaskScope&) = delete;

    void spawn(QCoro::Task<> task);

    /// Ends when no task is left, including those spawned in the meantime.
    [[nodiscard]] QCoro::Task<> join();

    [[nodiscard]] int count() const { return m_count; }

private:
    QCoro::Task<> watch(QCoro::Task<> task);

    int m_count = 0;
    std::unique_ptr<QPromise<void>> m_idle;
};

} // namespace orvane
