// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ChannelRecovery.h"

#include "base/Clock.h"
#include "base/TaskScope.h"
#include "playback/PlayerManager.h"
#include "state/AppNotification.h"
#include "state/AppState.h"

namespace orvane {

namespace {

constexpr std::chrono::milliseconds lookInterval{300};

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
    if (m_watch)
        return;
    m_watch.emplace();
    m_tasks.spawn(watch(m_watch->get_token()));
}

void ChannelRecovery::stop() {
    if (m_watch)
        m_watch->request_stop();
    m_watch.reset();
}

QCoro::Task<> ChannelRecovery::watch(std::stop_token stop) {
    while (true) {
        const ReopenPolicy::Step step = m_policy.step(situation(), m_since, m_clock.sinceBoot());
        if (step == ReopenPolicy::Step::finish)
            break;
        if (step == ReopenPolicy::Step::reopen)
            m_player.retryCurrent();
        co_await m_clock.sleep(lookInterval, stop);
        if (stop.stop_requested())
            co_return;
    }
    m_watch.reset();
}

ReopenPolicy::Situation ChannelRecovery::situation() const {
    using Situation = ReopenPolicy::Situation;
    if (m_state.transport() != Transport::playing || !m_state.currentChannel())
        return Situation::notWanted;
    const PlaybackState::Value& now = m_state.playbackState();
    if (std::holds_alternative<PlaybackState::Error>(now))
        return Situation::failed;
    if (!std::holds_alternative<PlaybackState::Playing>(now))
        return Situation::loading;
    return m_player.isWaiting() ? Situation::stuck : Situation::playing;
}

} // namespace orvane
