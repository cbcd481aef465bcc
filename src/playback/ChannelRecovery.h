// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "playback/ReopenPolicy.h"

#include <QCoroTask>

#include <stop_token>
#include <vector>

namespace orvane {

class AppState;
class Clock;
class PlayerManager;
class TaskScope;

/// Opens the channel that the person was watching again, with a fresh address, when the machine or
/// its network is back and the picture is not. Owned by the desktop's integration; main thread. A
/// channel that fails for good shows its error as any other.
class ChannelRecovery {
public:
    /// All outlive it; the scope is joined before it goes.
    ChannelRecovery(const AppState& state, PlayerManager& player, NotificationCenter& notifications,
                    Clock& clock, TaskScope& tasks);
    ~ChannelRecovery();
    ChannelRecovery(const ChannelRecovery&) = delete;
    ChannelRecovery& operator=(const ChannelRecovery&) = delete;

    /// The machine has woken up, or its network has come back.
    void returned();
    /// There is no network, so there is no use in trying.
    void stop();

private:
    [[nodiscard]] QCoro::Task<> watch(std::stop_token stop);
    [[nodiscard]] ReopenPolicy::Situation situation() const;

    const AppState& m_state;
    PlayerManager& m_player;
    Clock& m_clock;
    TaskScope& m_tasks;
    std::vector<NotificationCenter::Token> m_observers;
    ReopenPolicy m_policy;
    /// When the playback state became what it is.
    ReopenPolicy::Time m_since{};
    /// Present while the picture is watched.
    std::optional<std::stop_source> m_watch;
};

} // namespace orvane
