// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"
#include "model/Resolution.h"
#include "state/PlaybackState.h"

#include <chrono>
#include <optional>

namespace orvane {

class NotificationCenter;
class Preferences;

/// The shared in-memory state of the program. Owned by the composition root; main thread only.
/// Every assignment to a property that mirrors a preference writes the preference and then posts
/// the notification, even if the value is unchanged. Never fails.
class AppState {
public:
    AppState(Preferences& preferences, NotificationCenter& notifications);

    [[nodiscard]] const std::optional<Channel>& currentChannel() const { return m_currentChannel; }
    /// Announces the channel without storing it as the last one.
    void assignCurrentChannel(std::optional<Channel> channel);
    /// Announces the channel, then stores its id as the last one, or "" for nullopt.
    void setCurrentChannel(std::optional<Channel> channel);

    [[nodiscard]] const PlaybackState::Value& playbackState() const { return m_playbackState; }
    /// These three change and announce the playback state; none changes the current channel.
    void setLoading(const Channel& channel);
    void setPlaying(const Channel& channel);
    void setError(const Channel& channel, const QString& message);

    [[nodiscard]] Transport transport() const { return m_transport; }
    /// Announced only when it changes.
    void setTransport(Transport transport);

    /// Announced only when it changes.
    [[nodiscard]] const LivePosition& livePosition() const { return m_livePosition; }
    void setLivePosition(const LivePosition& position);

    /// Whether only the sound is played, and no window shown. Announced only when it changes.
    [[nodiscard]] bool isSoundOnly() const { return m_isSoundOnly; }
    void setSoundOnly(bool on);

    /// How much of a stream is kept to go back to; zero for nothing.
    [[nodiscard]] std::chrono::minutes bufferLength() const;
    void setBufferLength(std::chrono::minutes length);

    /// From 0 to 1.
    [[nodiscard]] float volume() const { return m_volume; }
    void setVolume(float volume);

    [[nodiscard]] bool isMuted() const { return m_isMuted; }
    void setMuted(bool muted);

    [[nodiscard]] Resolution resolution() const { return m_resolution; }
    void setResolution(Resolution resolution);

    [[nodiscard]] bool isGhostMode() const { return m_isGhostMode; }
    void setGhostMode(bool on);

    /// Seconds; 0 when no sleep timer runs. Not announced: the sleep timer announces its ticks.
    [[nodiscard]] double sleepTimerRemaining() const { return m_sleepTimerRemaining; }
    void setSleepTimerRemaining(double seconds) { m_sleepTimerRemaining = seconds; }

    /// Not announced.
    [[nodiscard]] bool isFullscreen() const { return m_isFullscreen; }
    void setFullscreen(bool on) { m_isFullscreen = on; }

    /// Whether the player window is open, be it minimised or invisible in ghost mode. Announced
    /// only when it changes.
    [[nodiscard]] bool isPlayerShown() const { return m_isPlayerShown; }
    void setPlayerShown(bool isShown);

private:
    Preferences& m_preferences;
    NotificationCenter& m_notifications;
    std::optional<Channel> m_currentChannel;
    PlaybackState::Value m_playbackState = PlaybackState::Idle{};
    Transport m_transport = Transport::stopped;
    LivePosition m_livePosition;
    bool m_isSoundOnly = false;
    float m_volume;
    bool m_isMuted;
    Resolution m_resolution;
    double m_sleepTimerRemaining = 0;
    bool m_isFullscreen = false;
    bool m_isPlayerShown = false;
    bool m_isGhostMode;
};

} // namespace orvane
