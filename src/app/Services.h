// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Environment.h"
#include "app/Timeline.h"
#include "base/Clock.h"
#include "base/NotificationCenter.h"
#include "base/TaskScope.h"
#include "platform/desktop/Autostart.h"
#include "platform/media/MpvMediaPlayer.h"
#include "platform/media/MpvTeardownQueue.h"
#include "platform/system/HttpClient.h"
#include "platform/system/Process.h"
#include "platform/windowing/SystemEventMonitor.h"
#include "playback/PlayerManager.h"
#include "playback/SleepTimer.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "state/AppState.h"
#include "state/ChannelRegistry.h"
#include "streaming/ChannelResolver.h"
#include "streaming/StreamResolver.h"
#include "streaming/YtDlpManager.h"
#include "telemetry/TelemetryService.h"
#include "updates/UpdaterController.h"

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
    MpvTeardownQueue teardown;
    MpvMediaPlayerFactory players;
    YtDlpTool ytDlpTool;
    YtDlpManager ytDlp;
    StreamResolver resolver;
    ChannelResolver channelResolver;
    PlayerManager player;
    SleepTimer sleepTimer;
    UpdaterController updater;
};

} // namespace orvane
