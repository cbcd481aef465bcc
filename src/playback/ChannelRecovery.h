// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"
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

/// Reopens a channel that hangs after the machine has woken up or the network has come back, with a
/// fresh address. Owned by the desktop integration; main thread. A channel that has failed, then or
/// before, is the task of `ChannelHealing`.
class ChannelRecovery {
public:
    /// All references must outlive this object; `tasks` is joined before its destruction.
    ChannelRecovery(const AppState& state, PlayerManager& player, NotificationCenter& notifications,
                    Clock& clock, TaskScope& tasks);
    ~ChannelRecovery();
    ChannelRecovery(const ChannelRecovery&) = delete;
    ChannelRecovery& operator=(const ChannelRecovery&) = delete;

    /// The machine has woken up, or its network has come back.
    void returned();
    /// There is no network, so reopening would be pointless.
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
    /// When the current playback state began.
    ReopenPolicy::Time m_since{};
    Cancellation m_watch;
};

} // namespace orvane
