// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Environment.h"
#include "app/Timeline.h"
#include "base/Clock.h"
#include "base/NotificationCenter.h"
#include "base/TaskScope.h"
#include "platform/desktop/Autostart.h"
#include "platform/media/MpvMediaPlayerFactory.h"
#include "platform/media/MpvTeardownQueue.h"
#include "platform/system/HttpClient.h"
#include "platform/system/Process.h"
#include "platform/windowing/SystemEventMonitor.h"
#include "playback/PlayerManager.h"
#include "playback/SleepTimer.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "settings/WatchHistory.h"
#include "state/AppState.h"
#include "state/ChannelRegistry.h"
#include "streaming/ChannelResolver.h"
#include "streaming/StreamResolver.h"
#include "streaming/tool/YtDlpManager.h"
#include "streaming/tool/YtDlpUpdater.h"
#include "telemetry/TelemetryService.h"
#include "updates/UpdaterController.h"

#include <optional>

namespace orvane {

/// The composition root: creates the parts of the program and passes each its collaborators. Each
/// member depends only on earlier ones, so that they are destroyed in the right order. One
/// instance, owned by `main`; main thread.
struct Services {
    /// `videoOutput` is not `automatic`.
    Services(const Environment& environment, const QString& preferencesPath,
             VideoOutput videoOutput);

    VideoOutput videoOutput;
    /// The site of the channels' web pages and streams; nullopt if none is configured.
    std::optional<Origin> videoSite;
    Autostart autostart;
    Timeline timeline;
    NotificationCenter notifications;
    UserDefaults defaults;
    Preferences preferences;
    UserDefaults watchedDays;
    WatchHistory watchHistory;
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
    StreamLadder ladder;
    YtDlpUpdater ytDlpUpdater;
    YtDlpManager ytDlp;
    StreamResolver resolver;
    ChannelResolver channelResolver;
    PlayerManager player;
    SleepTimer sleepTimer;
    UpdaterController updater;
};

} // namespace orvane
