// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"
#include "model/Resolution.h"
#include "state/PlaybackState.h"

#include <optional>

namespace orvane {

class NotificationCenter;
class Preferences;

/// The live state that Orvane's parts share. Owned by the composition root; main thread only.
/// Settings that mirror a preference are written through first and announced after, on every
/// assignment, even of the value already held. Never fails.
class AppState {
public:
    AppState(Preferences& preferences, NotificationCenter& notifications);

    [[nodiscard]] const std::optional<Channel>& currentChannel() const { return m_currentChannel; }
    /// Announces the channel but does not remember it; `setCurrentChannel` does both.
    void assignCurrentChannel(std::optional<Channel> channel);
    /// Announces the channel and stores its id as the last one, or "" when there is none.
    void setCurrentChannel(std::optional<Channel> channel);

    [[nodiscard]] const PlaybackState::Value& playbackState() const { return m_playbackState; }
    /// The three below change the playback state and announce it; none touches the current channel.
    void setLoading(const Channel& channel);
    void setPlaying(const Channel& channel);
    void setError(const Channel& channel, const QString& message);

    [[nodiscard]] Transport transport() const { return m_transport; }
    /// Announced only where it is another one.
    void setTransport(Transport transport);

    /// From 0 to 1.
    [[nodiscard]] float volume() const { return m_volume; }
    void setVolume(float volume);

    [[nodiscard]] bool isMuted() const { return m_isMuted; }
    void setMuted(bool muted);

    [[nodiscard]] Resolution resolution() const { return m_resolution; }
    void setResolution(Resolution resolution);

    [[nodiscard]] bool isGhostMode() const { return m_isGhostMode; }
    void setGhostMode(bool on);

    /// Seconds; 0 when no sleep timer runs. Silent: the sleep timer announces its own ticks.
    [[nodiscard]] double sleepTimerRemaining() const { return m_sleepTimerRemaining; }
    void setSleepTimerRemaining(double seconds) { m_sleepTimerRemaining = seconds; }

    /// Silent.
    [[nodiscard]] bool isFullscreen() const { return m_isFullscreen; }
    void setFullscreen(bool on) { m_isFullscreen = on; }

private:
    Preferences& m_preferences;
    NotificationCenter& m_notifications;
    std::optional<Channel> m_currentChannel;
    PlaybackState::Value m_playbackState = PlaybackState::Idle{};
    Transport m_transport = Transport::stopped;
    float m_volume;
    bool m_isMuted;
    Resolution m_resolution;
    double m_sleepTimerRemaining = 0;
    bool m_isFullscreen = false;
    bool m_isGhostMode;
};

} // namespace orvane
