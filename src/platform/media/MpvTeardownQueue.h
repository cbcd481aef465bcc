// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/BackgroundThreads.h"

#include <QCoroTask>
#include <QObject>

#include <functional>
#include <list>
#include <memory>
#include <stop_token>

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

    /// Whether an instance takes one of the places: those that wait for something else than a
    /// stream's server, such as a silent sound server, must not keep others from being made.
    enum class Share { place, none };
    /// `whenDestroyed` is called on the main thread.
    void enqueue(std::unique_ptr<MpvInstance> instance, Share share = Share::place,
                 std::function<void()> whenDestroyed = {});
    /// Takes the places back from all instances that are not destroyed yet.
    void setAside();

    /// Returns the number of instances that are not destroyed yet.
    [[nodiscard]] int count() const { return static_cast<int>(m_entries.size()); }

    /// Whether fewer than `maximumCount` places are taken.
    [[nodiscard]] bool hasRoom() const;
    /// Completes when fewer than `maximumCount` places are taken, or soon after `stop` was
    /// requested.
    [[nodiscard]] QCoro::Task<> room(std::stop_token stop);
    /// Completes when there are none.
    [[nodiscard]] QCoro::Task<> empty();

Q_SIGNALS:
    void changed();

private:
    struct Entry {
        /// Until it is being destroyed.
        std::unique_ptr<MpvInstance> instance;
        Share share;
        std::function<void()> whenDestroyed;
    };
    using Entries = std::list<Entry>;

    void destroyStopped(const MpvInstance* instance);
    void destroyed(Entries::iterator entry);
    [[nodiscard]] QCoro::Task<> until(std::function<bool()> condition, std::stop_token stop);

    Entries m_entries;
    BackgroundThreads m_destroyers{maximumCount};
};

} // namespace orvane
