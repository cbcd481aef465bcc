// SPDX-License-Identifier: GPL-3.0-or-later
#include "state/AppState.h"

#include "settings/Preferences.h"
#include "state/AppNotification.h"

namespace orvane {

AppState::AppState(Preferences& preferences, NotificationCenter& notifications)
    : m_preferences(preferences),
      m_notifications(notifications),
      m_volume(preferences.usableVolume()),
      m_isMuted(preferences.isMuted()),
      m_resolution(preferences.resolution()),
      m_isGhostMode(preferences.ghostModeEnabled()) {}

void AppState::assignCurrentChannel(std::optional<Channel> channel) {
    m_currentChannel = std::move(channel);
    m_notifications.post(AppNotification::channelChanged, m_currentChannel);
}

void AppState::setCurrentChannel(std::optional<Channel> channel) {
    // Not removed but set to "", which tells the next launch that the player was closed.
    const QString id = channel ? channel->id() : QString();
    assignCurrentChannel(std::move(channel));
    m_preferences.setLastChannelID(id);
}

void AppState::setLoading(const Channel& channel) {
    m_playbackState = PlaybackState::Loading{channel};
    m_notifications.post(AppNotification::streamLoading, channel);
}

void AppState::setPlaying(const Channel& channel) {
    m_playbackState = PlaybackState::Playing{channel};
    m_notifications.post(AppNotification::streamResolved, channel);
}

void AppState::setError(const Channel& channel, const QString& message) {
    m_playbackState = PlaybackState::Error{channel, message};
    m_notifications.post(AppNotification::streamError, message);
}

void AppState::setTransport(Transport transport) {
    if (transport == m_transport)
        return;
    m_transport = transport;
    m_notifications.post(AppNotification::transportChanged, m_transport);
}

void AppState::setPlayerShown(bool isShown) {
    if (isShown == m_isPlayerShown)
        return;
    m_isPlayerShown = isShown;
    m_notifications.post(AppNotification::playerShownChanged, m_isPlayerShown);
}

void AppState::setLivePosition(const LivePosition& position) {
    if (position == m_livePosition)
        return;
    m_livePosition = position;
    m_notifications.post(AppNotification::livePositionChanged, m_livePosition);
}

void AppState::setSoundOnly(bool on) {
    if (on == m_isSoundOnly)
        return;
    m_isSoundOnly = on;
    m_notifications.post(AppNotification::soundOnlyChanged, m_isSoundOnly);
}

std::chrono::minutes AppState::bufferLength() const {
    return m_preferences.bufferLength();
}

void AppState::setBufferLength(std::chrono::minutes length) {
    m_preferences.setBufferLength(length);
    m_notifications.post(AppNotification::bufferLengthChanged, length);
}

void AppState::setVolume(float volume) {
    m_volume = volume;
    m_preferences.setVolume(m_volume);
    m_notifications.post(AppNotification::volumeChanged, m_volume);
}

void AppState::setMuted(bool muted) {
    m_isMuted = muted;
    m_preferences.setMuted(m_isMuted);
    m_notifications.post(AppNotification::muteChanged, m_isMuted);
}

void AppState::setResolution(Resolution resolution) {
    m_resolution = resolution;
    m_preferences.setResolution(m_resolution);
    m_notifications.post(AppNotification::resolutionChanged, m_resolution);
}

void AppState::setGhostMode(bool on) {
    m_isGhostMode = on;
    m_preferences.setGhostModeEnabled(m_isGhostMode);
    m_notifications.post(AppNotification::ghostModeChanged, m_isGhostMode);
}

} // namespace orvane
