// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DeferredCall.h"
#include "base/NotificationCenter.h"
#include "base/Origin.h"
#include "model/Channel.h"
#include "platform/desktop/mpris/MediaRemote.h"
#include "state/ChannelRegistry.h"
#include "state/PlaybackState.h"

#include <QElapsedTimer>

#include <optional>
#include <vector>

namespace orvane {

class AppState;
class ApplicationActions;
class MessageBus;
class PlayerManager;

/// Lets media keys, panels and lock screens control the player, and reports to them what it plays.
/// Owned by the desktop integration; main thread. Ignores commands that cannot be carried out at
/// the moment.
class RemoteControl final : MediaRemoteCommands {
public:
    /// All outlive it.
    struct Collaborators {
        AppState& state;
        const ChannelRegistry& registry;
        PlayerManager& player;
        NotificationCenter& notifications;
        ApplicationActions& actions;
        MessageBus& sessionBus;
        /// The site of the channels' web pages.
        std::optional<Origin> videoSite;
    };

    explicit RemoteControl(const Collaborators& collaborators);
    ~RemoteControl() override;

private:
    /// Retries a channel that has failed. Without a current channel, plays the one that was stopped
    /// last, or else what plays at launch.
    void play() override;
    void pause() override;
    void playPause() override;
    /// Does the same as the window's close button.
    void stop() override;
    void next() override;
    void previous() override;
    void setVolume(double volume) override;
    void raise() override;
    void quit() override;

    void goBack(std::chrono::microseconds distance) override;
    [[nodiscard]] std::chrono::microseconds position() const override;

    void noteJump(const LivePosition& now);
    void step(ChannelStep step);
    void update();
    [[nodiscard]] MediaRemoteState state() const;

    Collaborators m_with;
    MediaRemote m_remote;
    /// The channel that `stop` ended; nullopt once another one plays.
    std::optional<Channel> m_stoppedChannel;
    QElapsedTimer m_sincePlaying;
    LivePosition m_lastPosition;
    /// Deferred, as a change of the state can consist of several notifications.
    DeferredCall m_update{[this] { update(); }};
    std::vector<NotificationCenter::Token> m_observers;
};

} // namespace orvane
