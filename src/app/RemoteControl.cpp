// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RemoteControl.h"

#include "playback/PlayerManager.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "state/ChannelRegistry.h"
#include "ui/ApplicationActions.h"

#include <cmath>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

bool hasFailed(const AppState& state) {
    return std::holds_alternative<PlaybackState::Error>(state.playbackState());
}

} // namespace

RemoteControl::RemoteControl(const Collaborators& collaborators)
    : m_with(collaborators), m_remote(u"orvane"_s, collaborators.sessionBus, *this) {
    using namespace AppNotification;
    m_observers = m_with.notifications.addObservers([this] { m_update.schedule(); }, channelChanged,
                                                    streamLoading, streamResolved, streamError,
                                                    transportChanged, volumeChanged);
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
    if (m_with.player.playNeighbor(step, current ? current : m_stoppedChannel))
        m_with.actions.showPlayer();
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
    result.track = {.id = channel->id(), .title = channel->displayName(), .url = page};
    if (hasFailed(now) || now.transport() == Transport::stopped)
        return result;
    result.status = now.transport() == Transport::paused ? Status::paused : Status::playing;
    // A channel that is still being opened cannot be paused.
    result.canPause = std::holds_alternative<PlaybackState::Playing>(now.playbackState());
    return result;
}

} // namespace orvane
