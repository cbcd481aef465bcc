// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDescriptor.h"
#include "platform/system/ProcessRequest.h"

#include <QFuture>
#include <QPromise>
#include <QSocketNotifier>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/types.h>

#include <memory>

namespace orvane {

/// A child that nothing here ends: it runs in a session of its own, without input or output, and
/// goes on when this object is destroyed or the program has ended. Where the request names a lock
/// file, the child starts once it has the lock, and holds it as long as it lives. Owned by
/// `LocalProcessRunner::run`; main thread, which it never blocks.
class IndependentChild {
public:
    explicit IndependentChild(ProcessRequest request);

    [[nodiscard]] QFuture<ProcessOutcome> start();
    /// Gives up the wait for the lock, or the child itself, which goes on.
    void abandon();

private:
    enum class Lock { taken, held, notNeeded };

    [[nodiscard]] Lock takeLock();
    void startOrWait();
    void spawn();
    void collect();
    void finish(ProcessOutcome outcome);

    const ProcessRequest m_request;
    FileDescriptor m_lock;
    QTimer m_lockTimer;
    int m_remainingPolls;
    /// Python looks for modules in the folder that it is started in, so that is an empty one.
    std::unique_ptr<QTemporaryDir> m_folder;
    pid_t m_pid = 0;
    /// Becomes readable when the child has exited.
    FileDescriptor m_exit;
    std::unique_ptr<QSocketNotifier> m_exited;
    QPromise<ProcessOutcome> m_promise;
    bool m_isFinished = false;
};

} // namespace orvane
