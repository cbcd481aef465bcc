// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>

#include <chrono>
#include <optional>
#include <stop_token>

namespace orvane {

class AppState;
class Clock;
class NotificationCenter;
class PlayerManager;
class TaskScope;

/// Pauses the player after some minutes. It counts down in steps of a second, keeps the rest in the
/// state, announces every step, and at the end announces that it has fired; whoever listens closes
/// the window. Owned by the composition root; main thread. Its countdown runs in the scope it was
/// given, which is joined before the timer goes.
/// A step takes exactly a second off, so the countdown drifts by what the steps come late; only
/// when the machine has been suspended meanwhile, a step takes that time off too.
class SleepTimer {
public:
    SleepTimer(AppState& state, PlayerManager& player, NotificationCenter& notifications,
               Clock& clock, TaskScope& tasks);
    ~SleepTimer();
    SleepTimer(const SleepTimer&) = delete;
    SleepTimer& operator=(const SleepTimer&) = delete;

    [[nodiscard]] bool isActive() const { return m_timerTask.has_value(); }

    /// Starts anew, whatever was running. With 0 minutes or less it fires with its first step.
    void schedule(int minutes);
    /// Silent.
    void cancel();

private:
    [[nodiscard]] QCoro::Task<> countDown(std::stop_token stop);
    void step(std::chrono::milliseconds sinceLastStep);
    void fireOnMain();

    AppState& m_state;
    PlayerManager& m_player;
    NotificationCenter& m_notifications;
    Clock& m_clock;
    TaskScope& m_tasks;
    /// Present while a countdown runs.
    std::optional<std::stop_source> m_timerTask;
};

} // namespace orvane
