// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ChannelPreparation.h"

#include "base/Clock.h"
#include "base/TaskScope.h"
#include "settings/Preferences.h"
#include "settings/WatchHistory.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "state/ChannelRegistry.h"
#include "streaming/StreamResolver.h"

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

constexpr qsizetype favoritesPrepared = 2;

} // namespace

ChannelPreparation::ChannelPreparation(const Collaborators& collaborators) : m_with(collaborators) {
    using namespace AppNotification;
    m_observers = m_with.notifications.addObservers(
        [this] { update(); }, streamResolved, streamError, transportChanged, playerShownChanged,
        preparesNextChannelsChanged);
    m_observers.push_back(m_with.notifications.addObserver(
        streamLoading, [this](const Channel& channel) { opened(channel); }));
}

ChannelPreparation::~ChannelPreparation() = default;

void ChannelPreparation::setSaving(bool isSaving) {
    m_isSaving = isSaving;
    update();
}

void ChannelPreparation::opened(const Channel& channel) {
    const std::optional<Channel>& before = m_with.state.currentChannel();
    if (before && *before != channel)
        m_policy.switched(m_with.clock.sinceBoot());
    update();
}

void ChannelPreparation::update() {
    countWatching();
    const bool isWanted = isPlaying() && m_with.state.isPlayerShown() && !m_isSaving &&
                          m_with.preferences.preparesNextChannels();
    if (!isWanted)
        m_run.cancel();
    else if (!m_run.isActive())
        m_with.tasks.spawn(prepare(m_run.restart()));
}

void ChannelPreparation::countWatching() {
    const std::optional<Channel> now = isPlaying() ? m_with.state.currentChannel() : std::nullopt;
    if (now == m_watched)
        return;
    const std::chrono::milliseconds time = m_with.clock.sinceBoot();
    const auto watched = std::chrono::duration_cast<std::chrono::seconds>(time - m_watchedSince);
    const std::optional<Channel> before = std::exchange(m_watched, now);
    m_watchedSince = time;
    if (before && watched.count() > 0 && m_with.preferences.preparesNextChannels())
        m_with.history.add(before->id(), watched, QDate::currentDate());
}

bool ChannelPreparation::isPlaying() const {
    return std::holds_alternative<PlaybackState::Playing>(m_with.state.playbackState()) &&
           m_with.state.transport() == Transport::playing;
}

QList<Channel> ChannelPreparation::candidates() const {
    const std::optional<Channel>& current = m_with.state.currentChannel();
    QList<Channel> channels;
    const auto add = [&](const std::optional<Channel>& channel) {
        if (channel && channel != current && !channels.contains(*channel))
            channels += *channel;
    };
    add(m_with.registry.enabledNeighbor(current, ChannelStep::next));
    add(m_with.registry.enabledNeighbor(current, ChannelStep::previous));
    for (const QString& id : m_with.history.mostWatched(m_with.preferences.favoriteChannelIDs(),
                                                        favoritesPrepared, QDate::currentDate()))
        add(m_with.registry.channel(id));
    return channels;
}

PreparationPolicy::Step ChannelPreparation::nextStep(const QList<Channel>& channels) const {
    const Clock::TimePoint now = m_with.clock.now();
    QList<PreparationPolicy::Candidate> described;
    for (const Channel& channel : channels) {
        const auto freshUntil = m_with.resolver.freshUntil(channel, m_with.state.resolution());
        described += {channel.id(), freshUntil.transform([&](Clock::TimePoint end) {
                          return std::chrono::ceil<PreparationPolicy::Time>(end - now);
                      })};
    }
    return m_policy.next(described, m_with.clock.sinceBoot());
}

QCoro::Task<> ChannelPreparation::prepare(std::stop_token stop) {
    co_await m_with.clock.sleep(PreparationPolicy::settleTime, stop);
    while (!stop.stop_requested()) {
        const QList<Channel> channels = candidates();
        const PreparationPolicy::Step step = nextStep(channels);
        if (const auto* wait = std::get_if<PreparationPolicy::Wait>(&step)) {
            co_await m_with.clock.sleep(wait->duration, stop);
            continue;
        }
        const auto* chosen = std::get_if<PreparationPolicy::Prepare>(&step);
        if (chosen == nullptr)
            co_return;
        const Channel channel = channels.at(chosen->index);
        const Resolution resolution = m_with.state.resolution();
        m_policy.began(channel.id(), m_with.clock.sinceBoot());
        co_await m_with.resolver.prepare(channel, resolution, stop);
        if (stop.stop_requested())
            m_policy.abandoned(channel.id());
    }
}

} // namespace orvane
