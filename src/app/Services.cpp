// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Services.h"

#include "model/AppConstants.h"

#include <QStandardPaths>

namespace orvane {

Services::Services(const Environment& environment, const QString& preferencesPath,
                   VideoOutput chosenOutput)
    : videoOutput(chosenOutput),
      siteHost(environment.videoSite ? environment.videoSite->host() : QString()),
      updates{.feed = environment.appcast,
              .publicKey = environment.appcastKey,
              .version = AppConstants::appVersion,
              .downloadFolder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation)},
      timeline(environment.timelinePath),
      defaults(preferencesPath),
      preferences(defaults),
      registry(preferences),
      state(preferences, notifications),
      http(AppConstants::appName),
      telemetry(defaults, environment.telemetry),
      players(graveyard, chosenOutput),
      ytDlp(HostFileSystem::real(), processes, clock, http, environment, tasks),
      resolver(environment.videoSite, HostFileSystem::real(), processes, clock, tasks),
      channelResolver(environment.videoSite, HostFileSystem::real(), processes),
      player(state, resolver, players, tasks),
      sleepTimer(state, player, notifications, clock, tasks) {}

} // namespace orvane
