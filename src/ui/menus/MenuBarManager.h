// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menus/ContextMenuBuilder.h"

#include <memory>

namespace orvane {

class ApplicationActions;
class MessageBus;
class StatusItem;

/// Owns the status item and its menu. Owned by the application controller; main thread.
class MenuBarManager {
public:
    /// All references outlive the manager.
    MenuBarManager(const MenuSources& sources, ApplicationActions& actions);
    ~MenuBarManager();

    /// Installs the status item. Call it once, before the functions below. The bus outlives the
    /// manager.
    void setup(MessageBus& sessionBus);
    /// Calls back when the icon has appeared in a tray, and when the last tray has gone. Requires
    /// `setup`.
    void onShownChanged(std::function<void(bool)> callback);

    void rebuildMenu();
    /// Call it when another channel is the current one.
    void updateCurrentChannel();

    [[nodiscard]] StatusItemPresence presence() const;

private:
    MenuSources m_sources;
    ApplicationActions& m_actions;
    std::unique_ptr<StatusItem> m_statusItem;
};

} // namespace orvane
