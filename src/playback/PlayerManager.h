// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"
#include "platform/media/MediaPlayer.h"
#include "state/ChannelRegistry.h"

#include <QCoroTask>
#include <QObject>
#include <QString>

#include <memory>
#include <stop_token>

namespace orvane {

class AppState;
class StreamResolver;
class TaskScope;

/// The single owner of the media player: opens channels, carries out the transport and audio
/// commands, recovers from refused addresses, and reports the outcome through `AppState`. Owned by
/// the composition root; main thread, which it never blocks. Its tasks run in the scope it was
/// given, which is joined before it goes. Failures become the error state with a text for the
/// person.
class PlayerManager {
public:
    PlayerManager(AppState& state, const ChannelRegistry& registry, StreamResolver& resolver,
                  MediaPlayerFactory& players, TaskScope& tasks);
    ~PlayerManager();
    PlayerManager(const PlayerManager&) = delete;
    PlayerManager& operator=(const PlayerManager&) = delete;

    /// Where players show their picture; null for nowhere. Not owned; it is reset before it goes.
    void setPlayerView(VideoSurface* view);

    /// Opens a channel and drops whatever was being opened before.
    void play(const Channel& channel);
    /// Plays the enabled channel before or after `from`, or after the first one if `from` is not
    /// enabled. Opens no window. Returns whether any channel is enabled.
    bool playNeighbor(ChannelStep step, const std::optional<Channel>& from);
    /// Plays the enabled channel before or after the current one.
    bool playNeighbor(ChannelStep step);
    /// Opens the current channel, if there is one, with a fresh address. Opens no window.
    void retryCurrent();

    /// The three below do nothing without a player. Of the state they change the transport alone.
    void pause();
    void resume();
    void togglePlayPause();

    /// Whether there is a player that has nothing to play just now.
    [[nodiscard]] bool isWaiting() const;

    void setMute(bool muted);
    void toggleMute();
    /// Clamped to 0...1.
    void setVolume(float volume);
    void adjustVolume(float delta);

    /// Lets go of the player and of what is being opened; but for the transport the state stays as
    /// it is.
    void stop();

private:
    [[nodiscard]] QCoro::Task<> load(Channel channel, std::stop_token stop);
    void open(std::unique_ptr<MediaPlayer> player, const Channel& channel);
    void retry(const Channel& channel);
    // By value: a replay takes down the observer that holds the caller's channel.
    void handleStatus(Channel channel);
    void handleFailure(Channel channel);

    AppState& m_state;
    const ChannelRegistry& m_registry;
    StreamResolver& m_resolver;
    MediaPlayerFactory& m_players;
    TaskScope& m_tasks;

    VideoSurface* m_playerView = nullptr;
    std::unique_ptr<MediaPlayer> m_player;
    /// While it lives, the player's status is observed.
    std::unique_ptr<QObject> m_playerItemObserver;
    std::stop_source m_currentTask{std::nostopstate};
    bool m_didAutoRetry = false;
};

/// Whether the text of a failure says that the address was refused, which mostly means that it has
/// expired.
[[nodiscard]] bool isRefusedAddress(const QString& message);

} // namespace orvane
