// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Services.h"

#include "model/AppConstants.h"

namespace orvane {

Services::Services(const Environment& environment, const QString& preferencesPath,
                   VideoOutput chosenOutput)
    : videoOutput(chosenOutput),
      timeline(environment.timelinePath),
      defaults(preferencesPath),
      preferences(defaults),
      registry(preferences),
      state(preferences, notifications),
      http(AppConstants::appName),
      players(graveyard, chosenOutput),
      ytDlp(HostFileSystem::real(), processes, clock, http, environment, tasks),
      resolver(environment.videoSite, HostFileSystem::real(), processes, clock, tasks),
      channelResolver(environment.videoSite, HostFileSystem::real(), processes),
      player(state, resolver, players, tasks),
      sleepTimer(state, player, notifications, clock, tasks) {}

} // namespace orvane
