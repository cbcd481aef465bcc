// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"
#include "base/NotificationCenter.h"
#include "playback/HealingPolicy.h"

#include <QCoroTask>

#include <stop_token>
#include <vector>

namespace orvane {

class AppState;
class Clock;
class PlayerCommands;
class TaskScope;

/// Tries a failed channel again by itself while the player window is shown or only the sound is
/// wanted, and announces the seconds until then. Another channel, a pause and the end of the window
/// end that. Owned by the desktop integration; main thread. What still fails is tried again later,
/// without end.
class ChannelHealing {
public:
    /// All references must outlive this object; `tasks` is joined before its destruction.
    ChannelHealing(const AppState& state, PlayerCommands& player, NotificationCenter& notifications,
                   Clock& clock, TaskScope& tasks);
    ~ChannelHealing();
    ChannelHealing(const ChannelHealing&) = delete;
    ChannelHealing& operator=(const ChannelHealing&) = delete;

    /// The machine has woken up, or its network has come back: a failed channel is tried again as
    /// soon as no further sign of that follows.
    void returned();
    /// The reason of the failure may be gone: a failed channel is tried again from the event loop.
    void retryNow();

private:
    void failed(const QString& message);
    void update();
    void waitUntil(HealingPolicy::Time due);
    void stopWaiting();
    [[nodiscard]] bool isRetryWanted() const;
    [[nodiscard]] QCoro::Task<> countDown(std::stop_token stop);

    const AppState& m_state;
    PlayerCommands& m_player;
    NotificationCenter& m_notifications;
    Clock& m_clock;
    TaskScope& m_tasks;
    std::vector<NotificationCenter::Token> m_observers;
    HealingPolicy m_policy;
    /// When the channel that has failed is to be tried again.
    HealingPolicy::Time m_due{};
    Cancellation m_countdown;
};

} // namespace orvane
