// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/TaskScope.h"

#include <QCoroFuture>

namespace orvane {

void TaskScope::spawn(QCoro::Task<> task) {
    ++m_count;
    watch(std::move(task));
}

QCoro::Task<> TaskScope::join() {
    while (m_count > 0) {
        m_idle = std::make_unique<QPromise<void>>();
        m_idle->start();
        const QFuture<void> idle = m_idle->future();
        co_await idle;
    }
}

QCoro::Task<> TaskScope::watch(QCoro::Task<> task) {
    co_await task;
    if (--m_count == 0 && m_idle)
        m_idle->finish();
}

} // namespace orvane
