// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"
#include "model/Channel.h"
#include "platform/media/MediaPlayer.h"
#include "playback/PlayerCommands.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>

namespace orvane {

class AppState;
class Clock;
class StreamResolver;
class TaskScope;

/// The single owner of the media player: opens channels, carries out the transport and audio
/// commands, retries refused addresses, and reports the outcome through `AppState`. Owned by the
/// composition root; main thread, which it never blocks. Failures become the error state with a
/// message for the user. Of commands that follow each other faster than a channel opens, only the
/// last one is carried out to the end.
class PlayerManager final : public PlayerCommands {
public:
    /// All references must outlive this object; `tasks` is joined before its destruction.
    PlayerManager(AppState& state, const ChannelRegistry& registry, StreamResolver& resolver,
                  MediaPlayerFactory& players, Clock& clock, TaskScope& tasks);
    ~PlayerManager() override;
    PlayerManager(const PlayerManager&) = delete;
    PlayerManager& operator=(const PlayerManager&) = delete;

    void setPlayerView(VideoSurface* view) override;

    void play(const Channel& channel) override;
    /// Plays the enabled channel before or after `from`, or after the first one if `from` is not
    /// enabled. Opens no window. Returns whether any channel is enabled.
    bool playNeighbor(ChannelStep step, const std::optional<Channel>& from);
    bool playNeighbor(ChannelStep step) override;
    void retryCurrent() override;

    /// These three do nothing without a player, unless the channel has failed. Of the state they
    /// change only the transport.
    void pause();
    void resume();
    void togglePlayPause() override;

    /// Later if `distance` is negative.
    void goBack(std::chrono::milliseconds distance) override;
    void goLive() override;
    /// Keeps so much of this stream and the next ones, whatever was kept before.
    void setBufferLength(std::chrono::minutes length);
    /// Only the sound is played, or picture and sound again.
    void setSoundOnly(bool on);

    /// Whether the player is waiting for data.
    [[nodiscard]] bool isWaiting() const;

    void setMute(bool muted);
    void toggleMute() override;
    /// Clamped to 0...1.
    void setVolume(float volume);
    void adjustVolume(float delta) override;

    /// Destroys the player and cancels opening. Of the state it changes only the transport.
    void stop();

private:
    /// Cancels what is being opened.
    void cutOff();
    [[nodiscard]] QCoro::Task<> settle(std::stop_token stop);
    [[nodiscard]] QCoro::Task<> load(Channel channel, std::stop_token stop);
    /// Makes a player for the address and opens it.
    [[nodiscard]] QCoro::Task<> load(StreamAddress address, Channel channel,
                                     std::unique_ptr<MediaPlayerFactory::Standby> standby,
                                     std::stop_token stop);
    void open(std::unique_ptr<MediaPlayer> player, const StreamAddress& address,
              const Channel& channel);
    void retry(const Channel& channel);
    [[nodiscard]] bool isPlaying() const;
    [[nodiscard]] bool hasFailed() const;
    // By value: retrying destroys the observer that holds the caller's channel.
    void handleStatus(Channel channel);
    void handleFailure(Channel channel);
    void fail(const Channel& channel, const QString& message);

    AppState& m_state;
    const ChannelRegistry& m_registry;
    StreamResolver& m_resolver;
    MediaPlayerFactory& m_players;
    Clock& m_clock;
    TaskScope& m_tasks;

    VideoSurface* m_playerView = nullptr;
    /// Destroyed when it fails.
    std::unique_ptr<MediaPlayer> m_player;
    /// Context of the connection to the player's status; destroying it ends the observation.
    std::unique_ptr<QObject> m_playerItemObserver;
    Cancellation m_currentTask;
    /// When the last opening was cancelled, in time since boot.
    std::optional<std::chrono::milliseconds> m_lastCutOff;
    bool m_didAutoRetry = false;
};

/// Whether the message of a failure says that the server refused the address, usually because it
/// has expired.
[[nodiscard]] bool isRefusedAddress(const QString& message);

} // namespace orvane
