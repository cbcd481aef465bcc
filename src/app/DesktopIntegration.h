// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/RemoteControl.h"
#include "platform/bus/MessageBus.h"
#include "platform/desktop/DesktopScreenSaver.h"
#include "platform/desktop/NetworkWatcher.h"
#include "platform/desktop/SavingMode.h"
#include "platform/desktop/SessionLock.h"
#include "platform/desktop/SleepWatcher.h"
#include "playback/ChannelHealing.h"
#include "playback/ChannelPreparation.h"
#include "playback/ChannelRecovery.h"
#include "playback/IdleInhibition.h"

namespace orvane {

class ApplicationActions;
class Clock;
class TaskScope;

/// Connects the player to the desktop's services: media keys and panels control it, the screen
/// stays on while a channel plays, and the channel is opened again after the machine slept or lost
/// its network, and after it has failed. Owned by the application controller; main thread. Works
/// without the services that the desktop lacks.
class DesktopIntegration {
public:
    /// All outlive it.
    struct Collaborators {
        AppState& state;
        const ChannelRegistry& registry;
        const Preferences& preferences;
        WatchHistory& watchHistory;
        StreamResolver& resolver;
        PlayerManager& player;
        NotificationCenter& notifications;
        Clock& clock;
        TaskScope& tasks;
        /// The site of the channels' web pages.
        std::optional<Origin> videoSite;
    };

    DesktopIntegration(const Collaborators& collaborators, ApplicationActions& actions);

    void start();
    /// Releases the screen saver and leaves the buses.
    void stop();

    [[nodiscard]] ChannelHealing& healing() { return m_healing; }
    [[nodiscard]] MessageBus& sessionBus() { return m_sessionBus; }

private:
    MessageBus m_sessionBus;
    RemoteControl m_remoteControl;
    DesktopScreenSaver m_screenSaver;
    IdleInhibition m_idleInhibition;
    MessageBus m_systemBus;
    SleepWatcher m_sleep;
    SessionLock m_lock;
    NetworkWatcher m_network;
    ChannelRecovery m_recovery;
    ChannelHealing m_healing;
    ChannelPreparation m_preparation;
    SavingMode m_saving;
};

} // namespace orvane
