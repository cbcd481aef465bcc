// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/SleepTimer.h"

#include "base/Clock.h"
#include "base/TaskScope.h"
#include "playback/PlayerManager.h"
#include "state/AppNotification.h"
#include "state/AppState.h"

#include <algorithm>

namespace orvane {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds stepLength{1};
/// A step that comes later than this was not late: the machine was suspended.
constexpr seconds longestStep{10};

} // namespace

SleepTimer::SleepTimer(AppState& state, PlayerManager& player, NotificationCenter& notifications,
                       Clock& clock, TaskScope& tasks)
    : m_state(state),
      m_player(player),
      m_notifications(notifications),
      m_clock(clock),
      m_tasks(tasks) {}

SleepTimer::~SleepTimer() {
    cancel();
}

void SleepTimer::schedule(int minutes) {
    cancel();
    m_state.setSleepTimerRemaining(double{60} * minutes);
    m_timerTask.emplace();
    m_tasks.spawn(countDown(m_timerTask->get_token()));
}

void SleepTimer::cancel() {
    if (m_timerTask)
        m_timerTask->request_stop();
    m_timerTask.reset();
    m_state.setSleepTimerRemaining(0);
}

QCoro::Task<> SleepTimer::countDown(std::stop_token stop) {
    milliseconds lastStep = m_clock.sinceBoot();
    while (true) {
        co_await m_clock.sleep(stepLength, stop);
        if (stop.stop_requested())
            co_return;
        const milliseconds now = m_clock.sinceBoot();
        step(now - lastStep);
        lastStep = now;
    }
}

void SleepTimer::step(milliseconds sinceLastStep) {
    double remaining = m_state.sleepTimerRemaining();
    if (sinceLastStep > longestStep && remaining > 1) {
        const auto missed = std::chrono::floor<seconds>(sinceLastStep - stepLength);
        // What is left is for this step.
        remaining = std::max(remaining - static_cast<double>(missed.count()), 1.0);
    }
    m_state.setSleepTimerRemaining(remaining - 1);
    m_notifications.post(AppNotification::sleepTimerTick, m_state.sleepTimerRemaining());
    if (m_state.sleepTimerRemaining() <= 0)
        fireOnMain();
}

void SleepTimer::fireOnMain() {
    cancel();
    m_notifications.post(AppNotification::sleepTimerFired);
    m_player.pause();
}

} // namespace orvane
