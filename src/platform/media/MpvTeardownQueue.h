// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QObject>
#include <QThreadPool>

#include <memory>
#include <stop_token>
#include <vector>

namespace orvane {

class MpvInstance;

/// Destroys mpv instances without blocking the main thread: stops the playback, frees the renderer
/// on the thread that it belongs to, and destroys the handle on a worker thread. Owned by the
/// composition root, which waits until the queue is empty before it is destroyed. Main thread.
class MpvTeardownQueue final : public QObject {
    Q_OBJECT

public:
    /// How many instances may wait for their destruction: each holds threads, buffers and perhaps a
    /// connection to a server that does not answer.
    static constexpr int maximumCount = 4;

    MpvTeardownQueue();
    ~MpvTeardownQueue() override;

    void enqueue(std::unique_ptr<MpvInstance> instance);

    /// Returns the number of instances that are not destroyed yet.
    [[nodiscard]] int count() const { return m_count; }

    /// Completes when there are fewer than `maximumCount`, or soon after `stop` was requested.
    [[nodiscard]] QCoro::Task<> room(std::stop_token stop);
    /// Completes when there are none.
    [[nodiscard]] QCoro::Task<> empty();

Q_SIGNALS:
    void changed();

private:
    void destroyStopped(MpvInstance* instance);
    [[nodiscard]] QCoro::Task<> fewerThan(int limit, std::stop_token stop);

    std::vector<std::unique_ptr<MpvInstance>> m_stopping;
    int m_count = 0;
    QThreadPool m_destroyers;
};

} // namespace orvane
