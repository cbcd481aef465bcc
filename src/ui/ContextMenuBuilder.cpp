// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/ContextMenuBuilder.h"

#include "model/AppState.h"
#include "model/ChannelRegistry.h"
#include "settings/Preferences.h"

namespace orvane {

Menu ContextMenuBuilder::build(const ChannelRegistry& registry, const Preferences& preferences,
                               const AppState& state) {
    const QSet<QString> enabled = preferences.enabledChannelIDs();
    const std::optional<Channel>& current = state.currentChannel();
    Menu menu;
    for (const ChannelCategory category : allCases<ChannelCategory>) {
        Menu items;
        for (const Channel& channel : registry.channels(category)) {
            if (enabled.contains(channel.id()))
                items.append({.title = channel.displayName(),
                              .action = MenuAction::channelSelected,
                              .representedObject = channel.id(),
                              .isOn = current == channel,
                              .indentationLevel = 1});
        }
        if (items.isEmpty())
            continue;
        menu.append({.title = displayName(category)});
        menu += items;
        menu.append(MenuItem::separator());
    }
    return menu;
}

} // namespace orvane
