// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/PlayerWindow.h"
#include "ui/SettingsWindow.h"

namespace orvane {

class ApplicationActions;
struct Services;

/// What the windows need of the services, which outlive them, as `actions` does. Main thread.
[[nodiscard]] PlayerWindow::Collaborators playerWindowCollaborators(Services& services,
                                                                    ApplicationActions& actions);
[[nodiscard]] SettingsWindow::Collaborators settingsWindowCollaborators(Services& services);

} // namespace orvane
