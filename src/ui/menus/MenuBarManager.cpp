// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menus/MenuBarManager.h"

#include "model/AppConstants.h"
#include "platform/desktop/tray/StatusItem.h"
#include "state/AppState.h"
#include "ui/ApplicationIcon.h"
#include "ui/DisplayText.h"
#include "ui/menus/MenuRenderer.h"
#include "ui/menus/StatusMenuBuilder.h"

#include <QIcon>
#include <QMenu>

namespace orvane {

using namespace Qt::StringLiterals;

MenuBarManager::MenuBarManager(const MenuSources& sources, ApplicationActions& actions)
    : m_sources(sources), m_actions(actions) {}

MenuBarManager::~MenuBarManager() = default;

void MenuBarManager::setup(MessageBus& sessionBus) {
    m_statusItem = std::make_unique<StatusItem>(
        applicationIcon(), AppConstants::appName,
        [this](QMenu& target) {
            renderMenu(StatusMenuBuilder::build(m_sources), m_actions, target);
        },
        sessionBus);
}

void MenuBarManager::onShownChanged(std::function<void(bool)> callback) {
    m_statusItem->onShownChanged(std::move(callback));
}

void MenuBarManager::rebuildMenu() {
    m_statusItem->rebuildMenu();
}

void MenuBarManager::updateCurrentChannel() {
    rebuildMenu();
    // A key can play a channel while no window shows it.
    const auto& channel = m_sources.state.currentChannel();
    m_statusItem->setToolTip(channel ? AppConstants::appName + u": "_s +
                                           singleLineName(channel->displayName())
                                     : QString(AppConstants::appName));
}

StatusItemPresence MenuBarManager::presence() const {
    return m_statusItem && m_statusItem->isShown() ? StatusItemPresence::present
                                                   : StatusItemPresence::absent;
}

} // namespace orvane
