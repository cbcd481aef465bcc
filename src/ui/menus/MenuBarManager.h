// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menus/ContextMenuBuilder.h"

#include <memory>

namespace orvane {

class ApplicationActions;
class StatusItem;

/// Owns the status item and the menu that drops from it. Owned by the application controller; main
/// thread.
class MenuBarManager {
public:
    /// What is handed over outlives it.
    MenuBarManager(const MenuSources& sources, ApplicationActions& actions);
    ~MenuBarManager();

    /// Installs the status item. Once, before the functions below.
    void setup();

    void rebuildMenu();
    /// The channel that has the check mark may be another one.
    void updateCurrentChannel();

    [[nodiscard]] StatusItemPresence presence() const;

private:
    MenuSources m_sources;
    ApplicationActions& m_actions;
    /// What the status item's menu shows.
    Menu m_menu;
    std::unique_ptr<StatusItem> m_statusItem;
};

} // namespace orvane
