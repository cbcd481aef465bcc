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
      m_idleInhibition(services.state, services.notifications, m_screenSaver, services.clock,
                       services.tasks),
      m_systemBus(MessageBus::Kind::system, services.clock, services.tasks),
      m_sleep(m_systemBus),
      m_recovery(services.state, services.player, services.notifications, services.clock,
                 services.tasks) {
    const auto returned = [this] { m_recovery.returned(); };
    QObject::connect(&m_sleep, &SleepWatcher::wokeUp, &m_sleep, returned);
    QObject::connect(&m_network, &NetworkWatcher::addressGained, &m_network, returned);
    QObject::connect(&m_network, &NetworkWatcher::lastAddressLost, &m_network,
                     [this] { m_recovery.stop(); });
}

void DesktopIntegration::start() {
    m_sessionBus.start();
    m_systemBus.start();
    m_network.start();
}

void DesktopIntegration::stop() {
    m_recovery.stop();
    m_systemBus.stop();
    m_sessionBus.stop();
}

} // namespace orvane
