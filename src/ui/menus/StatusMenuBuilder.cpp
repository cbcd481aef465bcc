// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menus/StatusMenuBuilder.h"

#include "language/Translation.h"

#include "model/AppConstants.h"
#include "settings/Preferences.h"
#include "state/AppState.h"
#include "ui/FavoriteKeys.h"

namespace orvane {

using namespace Qt::StringLiterals;

Menu StatusMenuBuilder::build(const MenuSources& sources) {
    const bool isGhost = sources.state.isGhostMode();
    const QStringList favorites = sources.preferences.favoriteChannelIDs();

    Menu menu;
    menu.append({.title = AppConstants::appName});
    menu.append(MenuItem::separator());
    menu.append({.title = isGhost ? translated("Menu", "✅ Disable Ghost Mode")
                                  : translated("Menu", "👻 Enable Ghost Mode"),
                 .action = MenuAction::toggleGhostMode,
                 .keyEquivalent = u"g"_s,
                 .modifierMask = ModifierMask::none,
                 .isOn = isGhost});
    // There is no window then whose menu has it.
    if (sources.state.isSoundOnly())
        menu.append(soundOnlyItem(sources.state));
    menu.append(MenuItem::separator());
    menu += channelSection(sources, [&](MenuItem& item) {
        // Positions include favourites that are not shown. No key plays those after the ninth.
        const qsizetype position = favorites.indexOf(item.representedObject);
        if (position < 0 || position >= favoriteKeys.size())
            return;
        item.keyEquivalent = QString(favoriteKeys[position]);
        item.modifierMask = ModifierMask::none;
    });
    menu.append({addChannelItem(), settingsItem(), checkForUpdatesItem(), aboutItem()});
    menu.append(MenuItem::separator());
    menu.append(quitItem());
    return menu;
}

} // namespace orvane
