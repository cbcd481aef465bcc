// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Environment.h"
#include "base/NotificationCenter.h"
#include "model/Channel.h"
#include "platform/desktop/mpris/MediaRemote.h"
#include "state/ChannelRegistry.h"

#include <QObject>

#include <optional>
#include <vector>

namespace orvane {

class AppState;
class ApplicationActions;
class MessageBus;
class PlayerManager;

/// Lets media keys, panels and lock screens drive the player, and tells them what it plays. Owned
/// by the desktop's integration; main thread. What cannot be done at the moment is ignored.
class RemoteControl final : public QObject, MediaRemoteCommands {
    Q_OBJECT

public:
    /// All outlive it.
    struct Collaborators {
        AppState& state;
        const ChannelRegistry& registry;
        PlayerManager& player;
        NotificationCenter& notifications;
        ApplicationActions& actions;
        MessageBus& sessionBus;
        /// Where the channels' pages are.
        std::optional<Origin> videoSite;
    };

    explicit RemoteControl(const Collaborators& collaborators);
    ~RemoteControl() override;

private:
    /// A channel that has failed is asked for anew; when nothing plays, what was stopped last plays
    /// again, or else what plays at launch.
    void play() override;
    void pause() override;
    void playPause() override;
    /// As the window's close button.
    void stop() override;
    void next() override;
    void previous() override;
    void setVolume(double volume) override;
    void raise() override;
    void quit() override;

    void step(ChannelStep step);
    /// Once the change is complete, of which this may be a part.
    void updateLater();
    [[nodiscard]] MediaRemoteState state() const;

    Collaborators m_with;
    MediaRemote m_remote;
    std::vector<NotificationCenter::Token> m_observers;
    /// Until another one plays.
    std::optional<Channel> m_stoppedChannel;
    bool m_isUpdateDue = false;
};

} // namespace orvane
