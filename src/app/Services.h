// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/AppState.h"
#include "model/ChannelRegistry.h"
#include "platform/Autostart.h"
#include "platform/Clock.h"
#include "platform/Environment.h"
#include "platform/HttpClient.h"
#include "platform/MpvInstance.h"
#include "platform/MpvMediaPlayer.h"
#include "platform/NotificationCenter.h"
#include "platform/Process.h"
#include "platform/SystemEventMonitor.h"
#include "platform/TaskScope.h"
#include "platform/Timeline.h"
#include "platform/UpdaterController.h"
#include "platform/UserDefaults.h"
#include "playback/PlayerManager.h"
#include "playback/SleepTimer.h"
#include "settings/Preferences.h"
#include "streaming/ChannelResolver.h"
#include "streaming/StreamResolver.h"
#include "streaming/YtDlpManager.h"
#include "telemetry/TelemetryService.h"

#include <optional>

namespace orvane {

/// The one place where the parts of the program are put together, each with its collaborators. The
/// order of the members is the order of dependence, so that they also come apart the right way
/// round. One instance, owned by `main`; main thread.
struct Services {
    /// `videoOutput` is what the machine draws with, not `automatic`.
    Services(const Environment& environment, const QString& preferencesPath,
             VideoOutput videoOutput);

    VideoOutput videoOutput;
    /// Of the channels that are played; nothing without one.
    std::optional<Origin> videoSite;
    UpdaterSettings updates;
    Autostart autostart;
    Timeline timeline;
    NotificationCenter notifications;
    UserDefaults defaults;
    Preferences preferences;
    ChannelRegistry registry;
    AppState state;
    SystemEventMonitor events;
    TaskScope tasks;
    SystemClock clock;
    LocalProcessRunner processes;
    HttpClient http;
    TelemetryService telemetry;
    MpvGraveyard graveyard;
    MpvMediaPlayerFactory players;
    YtDlpManager ytDlp;
    StreamResolver resolver;
    ChannelResolver channelResolver;
    PlayerManager player;
    SleepTimer sleepTimer;
};

} // namespace orvane
