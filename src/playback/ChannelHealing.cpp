// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ChannelHealing.h"

#include "base/Clock.h"
#include "base/Logging.h"
#include "base/TaskScope.h"
#include "playback/PlayerCommands.h"
#include "state/AppNotification.h"
#include "state/AppState.h"

#include <algorithm>

namespace orvane {

using namespace std::chrono_literals;

ChannelHealing::ChannelHealing(const AppState& state, PlayerCommands& player,
                               NotificationCenter& notifications, Clock& clock, TaskScope& tasks)
    : m_state(state),
      m_player(player),
      m_notifications(notifications),
      m_clock(clock),
      m_tasks(tasks) {
    using namespace AppNotification;
    m_observers = notifications.addObservers([this] { update(); }, channelChanged, transportChanged,
                                             playerShownChanged, soundOnlyChanged);
    m_observers.push_back(notifications.addObserver(streamLoading, [this](const Channel& channel) {
        m_policy.loading(channel.id(), m_clock.sinceBoot());
        update();
    }));
    m_observers.push_back(notifications.addObserver(streamResolved, [this] {
        m_policy.playing(m_clock.sinceBoot());
        update();
    }));
    m_observers.push_back(notifications.addObserver(
        streamError, [this](const QString& message) { failed(message); }));
}

ChannelHealing::~ChannelHealing() = default;

void ChannelHealing::returned() {
    const HealingPolicy::Time now = m_clock.sinceBoot();
    m_policy.returned(now);
    waitUntil(now + HealingPolicy::settleTime);
}

void ChannelHealing::retryNow() {
    m_policy.restart();
    waitUntil(m_clock.sinceBoot());
}

void ChannelHealing::failed(const QString& message) {
    const HealingPolicy::Time now = m_clock.sinceBoot();
    const HealingPolicy::Time delay = m_policy.failed(streamFailureOf(message), now);
    qCInfo(logPlayer, "healing: the next attempt is due in %lld ms",
           static_cast<long long>(delay.count()));
    waitUntil(now + delay);
}

void ChannelHealing::update() {
    if (!isRetryWanted())
        stopWaiting();
    else if (!m_countdown.isActive())
        m_tasks.spawn(countDown(m_countdown.restart()));
}

void ChannelHealing::waitUntil(HealingPolicy::Time due) {
    m_due = due;
    stopWaiting();
    update();
}

void ChannelHealing::stopWaiting() {
    if (!m_countdown.isActive())
        return;
    m_countdown.cancel();
    m_notifications.post(AppNotification::retryCountdown, std::nullopt);
}

bool ChannelHealing::isRetryWanted() const {
    const auto* error = std::get_if<PlaybackState::Error>(&m_state.playbackState());
    return error != nullptr && m_state.currentChannel() == error->channel &&
           m_state.transport() == Transport::playing &&
           (m_state.isPlayerShown() || m_state.isSoundOnly());
}

QCoro::Task<> ChannelHealing::countDown(std::stop_token stop) {
    // A machine that was asleep wakes up with less time left than a sleep of the whole time.
    HealingPolicy::Time left{};
    do {
        left = std::max(m_due - m_clock.sinceBoot(), HealingPolicy::Time{});
        const auto seconds = std::chrono::ceil<std::chrono::seconds>(left);
        m_notifications.post(AppNotification::retryCountdown, seconds);
        // Until the number changes. At least one sleep, so that all observers receive an error
        // before the next attempt begins.
        const HealingPolicy::Time step = left - std::max(seconds - 1s, 0s);
        co_await m_clock.sleep(step, stop);
        if (stop.stop_requested())
            co_return;
    } while (m_clock.sinceBoot() < m_due);
    stopWaiting();
    qCInfo(logPlayer, "healing: trying again");
    m_player.retryCurrent();
}

} // namespace orvane
