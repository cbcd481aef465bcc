// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ChannelRecovery.h"

#include "base/Clock.h"
#include "base/Logging.h"
#include "base/TaskScope.h"
#include "playback/PlayerManager.h"
#include "state/AppNotification.h"
#include "state/AppState.h"

namespace orvane {

namespace {

constexpr std::chrono::milliseconds pollInterval{300};

} // namespace

ChannelRecovery::ChannelRecovery(const AppState& state, PlayerManager& player,
                                 NotificationCenter& notifications, Clock& clock, TaskScope& tasks)
    : m_state(state), m_player(player), m_clock(clock), m_tasks(tasks) {
    using namespace AppNotification;
    m_observers = notifications.addObservers([this] { m_since = m_clock.sinceBoot(); },
                                             streamLoading, streamResolved, streamError);
}

ChannelRecovery::~ChannelRecovery() {
    stop();
}

void ChannelRecovery::returned() {
    m_policy.returned(m_clock.sinceBoot());
    qCInfo(logApp, "recovery: the machine or its network is back");
    if (!m_watch.isActive())
        m_tasks.spawn(watch(m_watch.restart()));
}

void ChannelRecovery::stop() {
    m_watch.cancel();
}

QCoro::Task<> ChannelRecovery::watch(std::stop_token stop) {
    while (true) {
        const ReopenPolicy::Step step = m_policy.step(situation(), m_since, m_clock.sinceBoot());
        if (step == ReopenPolicy::Step::finish)
            break;
        if (step == ReopenPolicy::Step::reopen)
            m_player.retryCurrent();
        co_await m_clock.sleep(pollInterval, stop);
        if (stop.stop_requested())
            co_return;
    }
    m_watch.finish();
}

ReopenPolicy::Situation ChannelRecovery::situation() const {
    using Situation = ReopenPolicy::Situation;
    const PlaybackState::Value& now = m_state.playbackState();
    if (m_state.transport() != Transport::playing || !m_state.currentChannel() ||
        std::holds_alternative<PlaybackState::Error>(now))
        return Situation::inactive;
    if (!std::holds_alternative<PlaybackState::Playing>(now))
        return Situation::loading;
    return m_player.isWaiting() ? Situation::stuck : Situation::playing;
}

} // namespace orvane
