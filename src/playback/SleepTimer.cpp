// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/SleepTimer.h"

#include "base/Clock.h"
#include "base/Logging.h"
#include "base/TaskScope.h"
#include "state/AppNotification.h"
#include "state/AppState.h"

#include <algorithm>

namespace orvane {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds stepLength{1};
/// A longer step means that the machine was suspended.
constexpr seconds maximumStep{10};

} // namespace

SleepTimer::SleepTimer(AppState& state, std::function<void()> pausePlayer,
                       NotificationCenter& notifications, Clock& clock, TaskScope& tasks)
    : m_state(state),
      m_pausePlayer(std::move(pausePlayer)),
      m_notifications(notifications),
      m_clock(clock),
      m_tasks(tasks) {}

SleepTimer::~SleepTimer() {
    cancel();
}

void SleepTimer::schedule(int minutes) {
    cancel();
    m_minutes = minutes;
    m_state.setSleepTimerRemaining(double{60} * minutes);
    qCInfo(logApp, "sleep timer: %d minutes", minutes);
    m_tasks.spawn(countDown(m_countdown.restart()));
}

void SleepTimer::cancel() {
    m_countdown.cancel();
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
    if (sinceLastStep > maximumStep && remaining > 1) {
        const auto missed = std::chrono::floor<seconds>(sinceLastStep - stepLength);
        // The last second is left to this step.
        remaining = std::max(remaining - static_cast<double>(missed.count()), 1.0);
    }
    m_state.setSleepTimerRemaining(remaining - 1);
    m_notifications.post(AppNotification::sleepTimerTick, m_state.sleepTimerRemaining());
    if (m_state.sleepTimerRemaining() <= 0)
        fireOnMain();
}

void SleepTimer::fireOnMain() {
    qCInfo(logApp, "sleep timer: fired");
    cancel();
    m_notifications.post(AppNotification::sleepTimerFired);
    m_pausePlayer();
}

} // namespace orvane
