// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DesktopIntegration.h"

#include "app/Services.h"

namespace orvane {

DesktopIntegration::DesktopIntegration(Services& services, ApplicationActions& actions)
    : m_sessionBus(MessageBus::Kind::session, services.clock, services.tasks),
      m_remoteControl({.state = services.state,
                       .registry = services.registry,
                       .player = services.player,
                       .notifications = services.notifications,
                       .actions = actions,
                       .sessionBus = m_sessionBus,
                       .videoSite = services.videoSite}) {}

void DesktopIntegration::start() {
    m_sessionBus.start();
}

void DesktopIntegration::stop() {
    m_sessionBus.stop();
}

} // namespace orvane
