// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowCollaborators.h"

#include "app/Services.h"

namespace orvane {

PlayerWindow::Collaborators playerWindowCollaborators(Services& services,
                                                      ApplicationActions& actions,
                                                      std::function<Menu()> contextMenu) {
    return {.preferences = services.preferences,
            .state = services.state,
            .player = services.player,
            .notifications = services.notifications,
            .events = services.events,
            .actions = actions,
            .contextMenu = std::move(contextMenu),
            .videoOutput = services.videoOutput};
}

SettingsWindow::Collaborators
settingsWindowCollaborators(Services& services, std::function<void(QSizeF)> resizePlayer) {
    return {.preferences = services.preferences,
            .registry = services.registry,
            .state = services.state,
            .notifications = services.notifications,
            .tasks = services.tasks,
            .resolve =
                [&resolver = services.channelResolver](const QString& input, std::stop_token stop) {
                    return resolver.resolve(input, std::move(stop));
                },
            .siteHost = services.videoSite ? services.videoSite->host() : QString(),
            .autostart = services.autostart,
            .resizePlayer = std::move(resizePlayer)};
}

} // namespace orvane
