// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RemoteControl.h"

#include "language/Translation.h"

#include "playback/PlayerManager.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "state/ChannelRegistry.h"
#include "ui/ApplicationActions.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Positions are never negative, however far back the stream goes.
constexpr std::chrono::hours startOfTrack{1};

/// A pause alone, or the wait for a segment, changes how far behind the viewer is by less.
constexpr std::chrono::seconds longestStep{3};

bool hasFailed(const AppState& state) {
    return std::holds_alternative<PlaybackState::Error>(state.playbackState());
}

} // namespace

RemoteControl::RemoteControl(const Collaborators& collaborators)
    : m_with(collaborators), m_remote(u"orvane"_s, collaborators.sessionBus, *this) {
    using namespace AppNotification;
    m_observers = m_with.notifications.addObservers(
        [this] { m_update.schedule(); }, channelChanged, streamLoading, streamResolved, streamError,
        transportChanged, volumeChanged, livePositionChanged, soundOnlyChanged);
    m_observers.push_back(m_with.notifications.addObserver(
        livePositionChanged, [this](const LivePosition& position) { noteJump(position); }));
    m_observers.push_back(
        m_with.notifications.addObserver(streamResolved, [this] { m_sincePlaying.start(); }));
    m_update.schedule();
}

RemoteControl::~RemoteControl() = default;

void RemoteControl::play() {
    const std::optional<Channel> channel = m_with.state.currentChannel();
    const bool isStillListed =
        m_stoppedChannel && m_with.registry.channel(m_stoppedChannel->id()).has_value();
    if (!channel && isStillListed)
        m_with.actions.playChannel(m_stoppedChannel->id());
    else if (!channel)
        m_with.actions.showPlayer();
    else if (hasFailed(m_with.state))
        m_with.player.retryCurrent();
    else
        m_with.player.resume();
}

void RemoteControl::pause() {
    if (state().canPause)
        m_with.player.pause();
}

void RemoteControl::playPause() {
    if (state().status == MediaRemoteState::Status::playing)
        pause();
    else
        play();
}

void RemoteControl::stop() {
    const std::optional<Channel> channel = m_with.state.currentChannel();
    if (!channel)
        return;
    m_with.notifications.post(AppNotification::closePlayer);
    m_stoppedChannel = channel;
}

void RemoteControl::next() {
    step(ChannelStep::next);
}

void RemoteControl::previous() {
    step(ChannelStep::previous);
}

void RemoteControl::step(ChannelStep step) {
    // A copy, as playing changes the state's channel.
    const std::optional<Channel> current = m_with.state.currentChannel();
    const bool isPlaying = m_with.player.playNeighbor(step, current ? current : m_stoppedChannel);
    if (isPlaying && !m_with.state.isSoundOnly())
        m_with.actions.showPlayer();
}

void RemoteControl::goBack(std::chrono::microseconds distance) {
    using std::chrono::milliseconds;
    m_with.player.goBack(std::chrono::duration_cast<milliseconds>(distance));
}

void RemoteControl::noteJump(const LivePosition& now) {
    const LivePosition before = std::exchange(m_lastPosition, now);
    if (std::chrono::abs(now.behind - before.behind) > longestStep)
        m_remote.announceJump();
}

std::chrono::microseconds RemoteControl::position() const {
    const std::chrono::milliseconds played(m_sincePlaying.isValid() ? m_sincePlaying.elapsed() : 0);
    return std::max(startOfTrack + played - m_with.state.livePosition().behind,
                    std::chrono::milliseconds::zero());
}

void RemoteControl::setVolume(double volume) {
    if (!std::isnan(volume))
        m_with.player.setVolume(static_cast<float>(volume));
}

void RemoteControl::raise() {
    m_with.actions.showPlayer();
}

void RemoteControl::quit() {
    m_with.actions.terminate();
}

void RemoteControl::update() {
    if (m_with.state.currentChannel())
        m_stoppedChannel.reset();
    m_remote.update(state());
}

MediaRemoteState RemoteControl::state() const {
    using Status = MediaRemoteState::Status;
    const AppState& now = m_with.state;
    const std::optional<Channel>& channel = now.currentChannel();
    MediaRemoteState result{.volume = static_cast<double>(now.volume()), .canPlay = true};
    result.canStep = m_with.registry.enabledNeighbor(channel, ChannelStep::next).has_value();
    if (!channel)
        return result;
    const QUrl page = m_with.videoSite ? channel->youtubeURL(*m_with.videoSite) : QUrl();
    result.track = {.id = channel->id(),
                    .title = channel->displayName(),
                    .url = page,
                    .comment = now.isSoundOnly() ? translated("Menu", "Sound Only") : QString()};
    if (hasFailed(now) || now.transport() == Transport::stopped)
        return result;
    result.status = now.transport() == Transport::paused ? Status::paused : Status::playing;
    // A channel that is still being opened cannot be paused.
    result.canPause = std::holds_alternative<PlaybackState::Playing>(now.playbackState());
    const LivePosition& position = now.livePosition();
    result.canSeek = result.canPause && (position.canGoBack || position.behind.count() > 0);
    return result;
}

} // namespace orvane
