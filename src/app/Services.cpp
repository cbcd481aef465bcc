// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Services.h"

namespace orvane {

Services::Services(const Environment& environment, const QString& preferencesPath,
                   VideoOutput chosenOutput)
    : videoOutput(chosenOutput),
      timeline(environment.timelinePath),
      defaults(preferencesPath),
      preferences(defaults),
      registry(preferences),
      state(preferences, notifications),
      players(graveyard, chosenOutput),
      resolver(environment.videoSite, HostFileSystem::real(), processes, clock, tasks),
      player(state, resolver, players, tasks) {}

} // namespace orvane
