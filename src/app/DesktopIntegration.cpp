// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DesktopIntegration.h"

#include "language/Translation.h"

#include "model/AppConstants.h"
#include "playback/PlayerManager.h"
#include "state/AppNotification.h"

namespace orvane {

using namespace Qt::StringLiterals;

DesktopIntegration::DesktopIntegration(const Collaborators& with, ApplicationActions& actions)
    : m_sessionBus(MessageBus::Kind::session, with.clock, with.tasks),
      m_remoteControl({.state = with.state,
                       .registry = with.registry,
                       .player = with.player,
                       .notifications = with.notifications,
                       .actions = actions,
                       .sessionBus = m_sessionBus,
                       .videoSite = with.videoSite}),
      m_screenSaver(m_sessionBus, AppConstants::appName,
                    translated("Player", "A channel is playing")),
      m_idleInhibition(with.state, with.notifications, m_screenSaver, with.clock, with.tasks),
      m_systemBus(MessageBus::Kind::system, with.clock, with.tasks),
      m_sleep(m_systemBus),
      m_lock(m_sessionBus, m_systemBus),
      m_recovery(with.state, with.player, with.notifications, with.clock, with.tasks),
      m_healing(with.state, with.player, with.notifications, with.clock, with.tasks),
      m_preparation({.state = with.state,
                     .registry = with.registry,
                     .preferences = with.preferences,
                     .history = with.watchHistory,
                     .resolver = with.resolver,
                     .notifications = with.notifications,
                     .clock = with.clock,
                     .tasks = with.tasks}),
      m_saving(m_sessionBus, m_systemBus) {
    const auto returned = [this] {
        m_recovery.returned();
        m_healing.returned();
    };
    QObject::connect(&m_sleep, &SleepWatcher::wokeUp, &m_sleep, returned);
    QObject::connect(&m_lock, &SessionLock::changed, &m_lock,
                     [&notifications = with.notifications](bool isLocked) {
                         notifications.post(AppNotification::sessionLockChanged, isLocked);
                     });
    QObject::connect(&m_saving, &SavingMode::changed, &m_saving,
                     [this](bool isOn) { m_preparation.setSaving(isOn); });
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
