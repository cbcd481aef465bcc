// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ScreenKeeper.h"

#include "base/Clock.h"
#include "base/TaskScope.h"
#include "platform/desktop/ScreenSaverInhibitor.h"
#include "state/AppNotification.h"
#include "state/AppState.h"

namespace orvane {

ScreenKeeper::ScreenKeeper(const AppState& state, NotificationCenter& notifications,
                           ScreenSaverInhibitor& inhibitor, Clock& clock, TaskScope& tasks)
    : m_state(state), m_inhibitor(inhibitor), m_clock(clock), m_tasks(tasks) {
    using namespace AppNotification;
    m_observers = notifications.addObservers([this] { follow(); }, streamLoading, streamResolved,
                                             streamError, transportChanged);
}

ScreenKeeper::~ScreenKeeper() {
    release();
}

void ScreenKeeper::follow() {
    const PlaybackState::Value& now = m_state.playbackState();
    if (m_state.transport() != Transport::playing ||
        std::holds_alternative<PlaybackState::Error>(now))
        release();
    else if (std::holds_alternative<PlaybackState::Playing>(now))
        hold();
    else if (m_isHolding && !m_waiting) {
        m_waiting.emplace();
        m_tasks.spawn(losePatience(m_waiting->get_token()));
    }
}

void ScreenKeeper::hold() {
    if (m_waiting)
        m_waiting->request_stop();
    m_waiting.reset();
    m_isHolding = true;
    m_inhibitor.inhibit();
}

void ScreenKeeper::release() {
    if (m_waiting)
        m_waiting->request_stop();
    m_waiting.reset();
    m_isHolding = false;
    m_inhibitor.release();
}

QCoro::Task<> ScreenKeeper::losePatience(std::stop_token stop) {
    co_await m_clock.sleep(patience, stop);
    if (!stop.stop_requested())
        release();
}

} // namespace orvane
