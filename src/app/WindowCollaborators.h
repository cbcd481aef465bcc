// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/player/PlayerWindow.h"
#include "ui/settings/SettingsWindow.h"

namespace orvane {

class ApplicationActions;
struct Services;

/// What the windows need of the services, which outlive them, as `actions` does. Main thread.
[[nodiscard]] PlayerWindow::Collaborators
playerWindowCollaborators(Services& services, ApplicationActions& actions,
                          std::function<Menu()> contextMenu);
[[nodiscard]] SettingsWindow::Collaborators
settingsWindowCollaborators(Services& services, std::function<void(QSizeF)> resizePlayer);

} // namespace orvane
