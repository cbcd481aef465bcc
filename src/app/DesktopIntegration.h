// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/RemoteControl.h"
#include "platform/desktop/DesktopScreenSaver.h"
#include "platform/desktop/MessageBus.h"
#include "platform/desktop/NetworkWatcher.h"
#include "platform/desktop/SleepWatcher.h"
#include "playback/ChannelRecovery.h"
#include "playback/IdleInhibition.h"

namespace orvane {

class ApplicationActions;
struct Services;

/// What makes the program a good citizen of the desktop: it can be driven from outside, keeps
/// the screen awake while a channel plays, and brings the picture back after the machine or its
/// network was away. Owned by the application controller; main thread.
/// Each part does without what the desktop does not have.
class DesktopIntegration {
public:
    /// Both outlive it.
    DesktopIntegration(Services& services, ApplicationActions& actions);

    void start();
    /// Gives back what was taken of the desktop.
    void stop();

private:
    MessageBus m_sessionBus;
    RemoteControl m_remoteControl;
    DesktopScreenSaver m_screenSaver;
    IdleInhibition m_idleInhibition;
    MessageBus m_systemBus;
    SleepWatcher m_sleep;
    NetworkWatcher m_network;
    ChannelRecovery m_recovery;
};

} // namespace orvane
