// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ChannelHealing.h"

#include "base/Clock.h"
#include "base/Logging.h"
#include "base/TaskScope.h"
#include "playback/HealingPolicy.h"
#include "playback/PlayerCommands.h"
#include "state/AppNotification.h"
#include "state/AppState.h"

#include <algorithm>
#include <utility>

namespace orvane {

using std::chrono::ceil;
using std::chrono::milliseconds;
using std::chrono::seconds;

ChannelHealing::ChannelHealing(const AppState& state, PlayerCommands& player,
                               NotificationCenter& notifications, Clock& clock, TaskScope& tasks)
    : m_state(state),
      m_player(player),
      m_notifications(notifications),
      m_clock(clock),
      m_tasks(tasks) {
    using namespace AppNotification;
    m_observers = notifications.addObservers([this] { update(); }, streamLoading, streamResolved,
                                             streamError, transportChanged);
}

ChannelHealing::~ChannelHealing() {
    m_wait.cancel();
}

void ChannelHealing::tryNow() {
    if (m_wait.isActive())
        m_player.retryCurrent();
}

void ChannelHealing::update() {
    const auto* error = std::get_if<PlaybackState::Error>(&m_state.playbackState());
    const bool isWanted = m_state.transport() == Transport::playing;
    if (std::holds_alternative<PlaybackState::Playing>(m_state.playbackState()))
        startPlaying();
    else if (std::holds_alternative<PlaybackState::Loading>(m_state.playbackState()))
        m_playingSince.reset();
    if (error == nullptr || !isWanted)
        cancel();
    else if (!m_wait.isActive())
        countDown(error->message);
}

void ChannelHealing::startPlaying() {
    if (!m_playingSince)
        m_playingSince = m_clock.sinceBoot();
}

void ChannelHealing::countDown(const QString& message) {
    const std::optional<Channel>& channel = m_state.currentChannel();
    if (!channel)
        return;
    const auto playingSince = std::exchange(m_playingSince, std::nullopt);
    const bool wasWell = playingSince && m_clock.sinceBoot() - *playingSince >= wellAfter;
    if (std::exchange(m_channel, channel->id()) != channel->id() || wasWell)
        m_attempts = 0;
    const seconds delay = healingDelay(m_attempts, streamFailureOf(message));
    qCInfo(logPlayer, "%s: trying again in %d s", qUtf8Printable(m_channel),
           static_cast<int>(delay.count()));
    m_tasks.spawn(wait(delay, m_wait.restart()));
}

QCoro::Task<> ChannelHealing::wait(seconds delay, std::stop_token stop) {
    const milliseconds end = m_clock.sinceBoot() + delay;
    for (milliseconds left = delay; left > milliseconds::zero(); left = end - m_clock.sinceBoot()) {
        announce(ceil<seconds>(left));
        co_await m_clock.sleep(std::min<milliseconds>(left, seconds(1)), stop);
        if (stop.stop_requested())
            co_return;
    }
    ++m_attempts;
    m_player.retryCurrent();
}

void ChannelHealing::cancel() {
    m_wait.cancel();
    announce(std::nullopt);
}

void ChannelHealing::announce(std::optional<seconds> remaining) {
    if (std::exchange(m_announced, remaining) != remaining)
        m_notifications.post(AppNotification::retryCountdown, remaining);
}

} // namespace orvane
