// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menus/Menu.h"

#include <functional>
#include <optional>

namespace orvane {

class AppState;
class ChannelRegistry;
class Preferences;

/// What the menus are built from. What is referred to outlives it; main thread.
struct MenuSources {
    const ChannelRegistry& registry;
    const Preferences& preferences;
    const AppState& state;
    /// The minutes that the running sleep timer was set to; nullopt when none runs.
    std::function<std::optional<int>()> sleepTimerMinutes;
};

/// Returns, for each category with an enabled channel, a header, its enabled channels in registry
/// order and a separator. `decorate` completes the item of each channel.
[[nodiscard]] Menu channelSection(const MenuSources& sources,
                                  const std::function<void(MenuItem&)>& decorate);

/// The items that both menus have.
[[nodiscard]] MenuItem addChannelItem();
[[nodiscard]] MenuItem soundOnlyItem(const AppState& state);
[[nodiscard]] MenuItem settingsItem();
[[nodiscard]] MenuItem checkForUpdatesItem();
[[nodiscard]] MenuItem aboutItem();
[[nodiscard]] MenuItem quitItem();

} // namespace orvane
