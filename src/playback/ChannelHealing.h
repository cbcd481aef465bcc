// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"
#include "base/NotificationCenter.h"

#include <QCoroTask>
#include <QString>

#include <chrono>
#include <optional>
#include <stop_token>
#include <vector>

namespace orvane {

class AppState;
class Clock;
class PlayerCommands;
class TaskScope;

/// Tries a failed channel again without the user, with growing delays, and announces the remaining
/// seconds. Ends when the user switches to another channel, closes the window, or pauses. Owned by
/// the composition root; main thread.
class ChannelHealing {
public:
    /// After playing for this long, the delays start with the shortest again.
    static constexpr std::chrono::seconds wellAfter{60};

    /// All references must outlive this object; `tasks` is joined before its destruction.
    ChannelHealing(const AppState& state, PlayerCommands& player, NotificationCenter& notifications,
                   Clock& clock, TaskScope& tasks);
    ~ChannelHealing();
    ChannelHealing(const ChannelHealing&) = delete;
    ChannelHealing& operator=(const ChannelHealing&) = delete;

    /// Tries a failed channel again at once, because what it needs may have come; does nothing if
    /// no channel has failed.
    void tryNow();

private:
    void update();
    void startPlaying();
    void countDown(const QString& message);
    [[nodiscard]] QCoro::Task<> wait(std::chrono::seconds delay, std::stop_token stop);
    void cancel();
    void announce(std::optional<std::chrono::seconds> remaining);

    const AppState& m_state;
    PlayerCommands& m_player;
    NotificationCenter& m_notifications;
    Clock& m_clock;
    TaskScope& m_tasks;
    std::vector<NotificationCenter::Token> m_observers;
    /// The id of the channel that the attempts are counted for.
    QString m_channel;
    int m_attempts = 0;
    /// Time since boot at which the channel began to play.
    std::optional<std::chrono::milliseconds> m_playingSince;
    std::optional<std::chrono::seconds> m_announced;
    Cancellation m_wait;
};

} // namespace orvane
