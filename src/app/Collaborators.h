// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppDelegate.h"
#include "ui/player/PlayerWindow.h"
#include "ui/settings/SettingsWindow.h"

#include <functional>

namespace orvane {

struct Services;

/// Select from the services what the application controller and the windows need. `services` and
/// `actions` outlive the results. Main thread.
[[nodiscard]] AppDelegate::Collaborators appDelegateCollaborators(Services& services);
[[nodiscard]] PlayerWindow::Collaborators
playerWindowCollaborators(Services& services, ApplicationActions& actions,
                          std::function<Menu()> contextMenu);
[[nodiscard]] SettingsWindow::Collaborators
settingsWindowCollaborators(Services& services, std::function<void(QSizeF)> resizePlayer);

} // namespace orvane
