// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menus/MenuSources.h"

#include "language/Translation.h"

#include "settings/Preferences.h"
#include "state/AppState.h"
#include "state/ChannelRegistry.h"

namespace orvane {

using namespace Qt::StringLiterals;

Menu channelSection(const MenuSources& sources, const std::function<void(MenuItem&)>& decorate) {
    const QSet<QString> enabled = sources.preferences.enabledChannelIDs();
    const std::optional<Channel>& current = sources.state.currentChannel();
    Menu menu;
    for (const ChannelCategory category : allCases<ChannelCategory>) {
        Menu items;
        for (const Channel& channel : sources.registry.channels(category)) {
            if (!enabled.contains(channel.id()))
                continue;
            MenuItem item{.title = channel.displayName(),
                          .action = MenuAction::channelSelected,
                          .representedObject = channel.id(),
                          .isOn = current == channel};
            decorate(item);
            items.append(item);
        }
        if (items.isEmpty())
            continue;
        menu.append({.title = displayName(category)});
        menu += items;
        menu.append(MenuItem::separator());
    }
    return menu;
}

MenuItem addChannelItem() {
    return {.title = translated("Menu", "Add Channel..."),
            .action = MenuAction::addChannel,
            .keyEquivalent = u"n"_s};
}

MenuItem soundOnlyItem(const AppState& state) {
    // The key acts in the program's own windows.
    return {.title = translated("Menu", "Sound Only"),
            .action = MenuAction::toggleSoundOnly,
            .keyEquivalent = u"s"_s,
            .modifierMask = ModifierMask::none,
            .isOn = state.isSoundOnly(),
            .isEnabled = state.currentChannel().has_value()};
}

MenuItem settingsItem() {
    return {.title = translated("Menu", "Settings..."),
            .action = MenuAction::openSettings,
            .keyEquivalent = u","_s};
}

MenuItem checkForUpdatesItem() {
    return {.title = translated("Menu", "Check for Updates..."),
            .action = MenuAction::checkForUpdates};
}

MenuItem aboutItem() {
    return {.title = translated("Menu", "About Orvane"), .action = MenuAction::showAbout};
}

MenuItem quitItem() {
    return {.title = translated("Menu", "Quit Orvane"),
            .action = MenuAction::terminate,
            .keyEquivalent = u"q"_s};
}

} // namespace orvane
