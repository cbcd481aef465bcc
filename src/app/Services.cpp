// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Services.h"

#include "model/AppConstants.h"
#include "platform/desktop/ShowInFolder.h"
#include "platform/system/LocalAddresses.h"
#include "ui/UpdaterDialog.h"

#include <QCoreApplication>
#include <QStandardPaths>

namespace orvane {

using namespace Qt::StringLiterals;

Services::Services(const Environment& environment, const QString& preferencesPath,
                   VideoOutput chosenOutput)
    : videoOutput(chosenOutput),
      videoSite(environment.videoSite),
      autostart({.folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                           u"/autostart"_s,
                 .identifier = AppConstants::bundleIdentifier,
                 .name = AppConstants::appName,
                 .executable = QCoreApplication::applicationFilePath()}),
      timeline(environment.timelinePath),
      defaults(preferencesPath),
      preferences(defaults),
      watchedDays(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                  u"/orvane/watched.json"_s),
      watchHistory(watchedDays),
      registry(preferences),
      state(preferences, notifications),
      http(AppConstants::appName),
      telemetry(defaults, http, environment.telemetry),
      players(teardown, chosenOutput),
      ytDlpTool(HostFileSystem::real(), processes, clock, http, environment.ytDlpSources,
                QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                    u"/orvane/yt-dlp/yt-dlp"_s),
      ladder(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                 u"/orvane/ladder.json"_s,
             clock),
      ytDlpUpdater(
          ytDlpTool,
          [this] {
              return ladder.remembered().transform(
                  [](const LadderMemory::Entry& entry) { return entry.command; });
          },
          tasks),
      ytDlp(ytDlpTool, ytDlpUpdater, tasks),
      resolver(environment.videoSite, ytDlpTool, ladder, clock, tasks),
      channelResolver(environment.videoSite, ytDlpTool),
      player(state, registry, resolver, players, clock, tasks),
      sleepTimer(
          state, [this] { player.pause(); }, notifications, clock, tasks),
      updater(
          {.feed = environment.appcast,
           .publicKey = environment.appcastKey,
           .version = AppConstants::appVersion,
           .downloadFolder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation)},
          http, tasks, std::make_unique<UpdaterDialog>(), showInFolder) {
    // A site on this machine, as in tests, has its streams here too.
    if (videoSite && !isLocalHost(videoSite->host()))
        keepStreamsFromLocalHosts();
}

} // namespace orvane
