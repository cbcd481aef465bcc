// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Collaborators.h"

#include "app/Services.h"

namespace orvane {

AppDelegate::Collaborators appDelegateCollaborators(Services& services) {
    return {
        .preferences = services.preferences,
        .registry = services.registry,
        .state = services.state,
        .notifications = services.notifications,
        .events = services.events,
        .player = services.player,
        .sleepTimer = services.sleepTimer,
        .telemetry = services.telemetry,
        .timeline = services.timeline,
        .updater = services.updater,
        .ytDlp = services.ytDlp,
        .ytDlpTool = services.ytDlpTool,
        .ladder = services.ladder,
        .processes = services.processes,
        .tasks = services.tasks,
        .teardown = services.teardown,
        .windows = {.preferences = services.preferences,
                    .player = services.player,
                    .makePlayerWindow =
                        [&services](ApplicationActions& actions, std::function<Menu()> menu) {
                            return std::make_unique<PlayerWindow>(
                                playerWindowCollaborators(services, actions, std::move(menu)));
                        },
                    .makeSettingsWindow =
                        [&services](std::function<void(QSizeF)> resizePlayer) {
                            return std::make_unique<SettingsWindow>(
                                settingsWindowCollaborators(services, std::move(resizePlayer)));
                        }},
        .desktop = {.state = services.state,
                    .registry = services.registry,
                    .preferences = services.preferences,
                    .watchHistory = services.watchHistory,
                    .resolver = services.resolver,
                    .player = services.player,
                    .notifications = services.notifications,
                    .clock = services.clock,
                    .tasks = services.tasks,
                    .videoSite = services.videoSite},
    };
}

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
            .ytDlp = services.ytDlpUpdater,
            .resizePlayer = std::move(resizePlayer)};
}

} // namespace orvane
