// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"

#include <QCoroTask>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>

namespace orvane {

class AppState;
class Clock;
class NotificationCenter;
class TaskScope;

/// Pauses the player after a number of minutes. Counts down in steps of one second, keeps the
/// remaining time in `AppState` and announces every step; at the end it announces that it has
/// fired, which makes the application controller close the window. Owned by the composition root;
/// main thread.
/// Each step subtracts exactly one second, so the countdown drifts by the delays of the steps. The
/// time for which the machine was suspended is subtracted as well.
class SleepTimer {
public:
    /// All references must outlive this object; `tasks` is joined before its destruction.
    SleepTimer(AppState& state, std::function<void()> pausePlayer,
               NotificationCenter& notifications, Clock& clock, TaskScope& tasks);
    ~SleepTimer();
    SleepTimer(const SleepTimer&) = delete;
    SleepTimer& operator=(const SleepTimer&) = delete;

    [[nodiscard]] bool isActive() const { return m_countdown.isActive(); }
    /// Returns what the running countdown was scheduled with; nullopt when none runs.
    [[nodiscard]] std::optional<int> minutes() const {
        return isActive() ? std::optional(m_minutes) : std::nullopt;
    }

    /// Replaces a running countdown. With 0 minutes or less it fires at the first step.
    void schedule(int minutes);
    /// Announces nothing.
    void cancel();

private:
    [[nodiscard]] QCoro::Task<> countDown(std::stop_token stop);
    void step(std::chrono::milliseconds sinceLastStep);
    void fireOnMain();

    AppState& m_state;
    const std::function<void()> m_pausePlayer;
    NotificationCenter& m_notifications;
    Clock& m_clock;
    TaskScope& m_tasks;
    Cancellation m_countdown;
    int m_minutes = 0;
};

} // namespace orvane
