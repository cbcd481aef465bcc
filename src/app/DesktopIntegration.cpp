// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DesktopIntegration.h"

#include "app/Services.h"
#include "model/AppConstants.h"

namespace orvane {

using namespace Qt::StringLiterals;

DesktopIntegration::DesktopIntegration(Services& services, ApplicationActions& actions)
    : m_sessionBus(MessageBus::Kind::session, services.clock, services.tasks),
      m_remoteControl({.state = services.state,
                       .registry = services.registry,
                       .player = services.player,
                       .notifications = services.notifications,
                       .actions = actions,
                       .sessionBus = m_sessionBus,
                       .videoSite = services.videoSite}),
      m_screenSaver(m_sessionBus, AppConstants::appName, u"A channel is playing"_s),
      m_screenKeeper(services.state, services.notifications, m_screenSaver, services.clock,
                     services.tasks) {}

void DesktopIntegration::start() {
    m_sessionBus.start();
}

void DesktopIntegration::stop() {
    m_sessionBus.stop();
}

} // namespace orvane
