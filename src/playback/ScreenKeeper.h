// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"

#include <QCoroTask>

#include <chrono>
#include <optional>
#include <stop_token>
#include <vector>

namespace orvane {

class AppState;
class Clock;
class ScreenSaverInhibitor;
class TaskScope;

/// Keeps the screen from blanking while a channel plays, and for a while when that channel is being
/// opened anew or another one in its place; a screen whose turn to blank has long come would else
/// go dark at once. Owned by the desktop's integration; main thread.
class ScreenKeeper {
public:
    /// For how long a channel may load and still count as playing.
    static constexpr std::chrono::seconds patience{60};

    /// All outlive it; the scope is joined before it goes.
    ScreenKeeper(const AppState& state, NotificationCenter& notifications,
                 ScreenSaverInhibitor& inhibitor, Clock& clock, TaskScope& tasks);
    ~ScreenKeeper();
    ScreenKeeper(const ScreenKeeper&) = delete;
    ScreenKeeper& operator=(const ScreenKeeper&) = delete;

private:
    void follow();
    void hold();
    void release();
    [[nodiscard]] QCoro::Task<> losePatience(std::stop_token stop);

    const AppState& m_state;
    ScreenSaverInhibitor& m_inhibitor;
    Clock& m_clock;
    TaskScope& m_tasks;
    std::vector<NotificationCenter::Token> m_observers;
    bool m_isHolding = false;
    /// Present while a channel loads for which the screen is still kept awake.
    std::optional<std::stop_source> m_waiting;
};

} // namespace orvane
