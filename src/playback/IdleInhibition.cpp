// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/IdleInhibition.h"

#include "base/Clock.h"
#include "base/Logging.h"
#include "base/TaskScope.h"
#include "platform/desktop/ScreenSaverInhibitor.h"
#include "state/AppNotification.h"
#include "state/AppState.h"

#include <utility>

namespace orvane {

IdleInhibition::IdleInhibition(const AppState& state, NotificationCenter& notifications,
                               ScreenSaverInhibitor& inhibitor, Clock& clock, TaskScope& tasks)
    : m_state(state), m_inhibitor(inhibitor), m_clock(clock), m_tasks(tasks) {
    using namespace AppNotification;
    m_observers = notifications.addObservers([this] { update(); }, streamLoading, streamResolved,
                                             streamError, transportChanged, soundOnlyChanged);
}

IdleInhibition::~IdleInhibition() {
    release();
}

void IdleInhibition::update() {
    const PlaybackState::Value& now = m_state.playbackState();
    if (m_state.transport() != Transport::playing || m_state.isSoundOnly() ||
        std::holds_alternative<PlaybackState::Error>(now))
        release();
    else if (std::holds_alternative<PlaybackState::Playing>(now))
        inhibit();
    else if (m_isInhibited && !m_timeout.isActive())
        m_tasks.spawn(releaseAfterTimeout(m_timeout.restart()));
}

void IdleInhibition::inhibit() {
    m_timeout.cancel();
    if (!std::exchange(m_isInhibited, true))
        qCInfo(logApp, "screen: inhibited");
    m_inhibitor.inhibit();
}

void IdleInhibition::release() {
    m_timeout.cancel();
    if (std::exchange(m_isInhibited, false))
        qCInfo(logApp, "screen: released");
    m_inhibitor.release();
}

QCoro::Task<> IdleInhibition::releaseAfterTimeout(std::stop_token stop) {
    co_await m_clock.sleep(loadingTimeout, stop);
    if (!stop.stop_requested())
        release();
}

} // namespace orvane
