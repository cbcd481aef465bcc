// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"
#include "base/NotificationCenter.h"

#include <QCoroTask>

#include <chrono>
#include <stop_token>
#include <vector>

namespace orvane {

class AppState;
class Clock;
class ScreenSaverInhibitor;
class TaskScope;

/// Keeps the screen from blanking while a channel plays with its picture, and for a limited time
/// while it is reopened or another channel is opened, since a screen idle for long enough would
/// blank at once. Owned by the desktop integration; main thread.
class IdleInhibition {
public:
    /// How long the inhibition is kept while a channel loads.
    static constexpr std::chrono::seconds loadingTimeout{60};

    /// All references must outlive this object; `tasks` is joined before its destruction.
    IdleInhibition(const AppState& state, NotificationCenter& notifications,
                   ScreenSaverInhibitor& inhibitor, Clock& clock, TaskScope& tasks);
    ~IdleInhibition();
    IdleInhibition(const IdleInhibition&) = delete;
    IdleInhibition& operator=(const IdleInhibition&) = delete;

private:
    void update();
    void inhibit();
    void release();
    [[nodiscard]] QCoro::Task<> releaseAfterTimeout(std::stop_token stop);

    const AppState& m_state;
    ScreenSaverInhibitor& m_inhibitor;
    Clock& m_clock;
    TaskScope& m_tasks;
    std::vector<NotificationCenter::Token> m_observers;
    bool m_isInhibited = false;
    /// Active while a channel loads and the inhibition is kept.
    Cancellation m_timeout;
};

} // namespace orvane
