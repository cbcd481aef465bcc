// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menus/ContextMenuBuilder.h"

#include "language/Translation.h"

#include "state/AppState.h"
#include "ui/DisplayText.h"

#include <cmath>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

Menu resolutions(Resolution chosen) {
    Menu menu;
    for (const Resolution resolution : allCases<Resolution>)
        menu.append({.title = title(resolution),
                     .action = MenuAction::resolutionSelected,
                     .representedObject = rawValue(resolution),
                     .isOn = resolution == chosen});
    return menu;
}

QString timeLeft(double seconds) {
    const int minutes = static_cast<int>(std::ceil(seconds / 60));
    return translated("Menu", "%n minutes left", nullptr, minutes);
}

Menu sleepTimes(std::optional<int> running, double secondsLeft) {
    Menu menu;
    for (const int minutes : {15, 30, 60, 90, 120})
        menu.append({.title = translated("Menu", "%n minutes", nullptr, minutes),
                     .action = MenuAction::sleepTimer,
                     .tag = minutes,
                     .isOn = minutes == running});
    if (running) {
        menu.append(MenuItem::separator());
        menu.append({.title = timeLeft(secondsLeft)});
        menu.append(
            {.title = translated("Menu", "Cancel Timer"), .action = MenuAction::cancelSleepTimer});
    }
    return menu;
}

Menu timeItems(const LivePosition& position) {
    const bool isBehind = position.behind > std::chrono::milliseconds::zero();
    return {{.title = translated("Menu", "10 Seconds Back"),
             .action = MenuAction::goBack,
             .keyEquivalent = u"backspace"_s,
             .modifierMask = ModifierMask::none,
             .isEnabled = position.canGoBack},
            {.title = translated("Menu", "Go to Live"),
             .action = MenuAction::goLive,
             .keyEquivalent = u"end"_s,
             .modifierMask = ModifierMask::none,
             .isEnabled = isBehind}};
}

} // namespace

Menu ContextMenuBuilder::build(const MenuSources& sources, StatusItemPresence statusItem) {
    const bool isOnlyMenu = statusItem == StatusItemPresence::absent;
    Menu menu = channelSection(sources, [](MenuItem& item) { item.indentationLevel = 1; });
    menu.append({.title = translated("Menu", "Resolution"),
                 .submenu = resolutions(sources.state.resolution())});
    menu.append(MenuItem::separator());
    menu.append({.title = translated("Menu", "👻 Ghost Mode"),
                 .action = MenuAction::toggleGhostMode,
                 .keyEquivalent = u"g"_s,
                 .modifierMask = ModifierMask::none,
                 .isOn = sources.state.isGhostMode()});
    menu.append(soundOnlyItem(sources.state));
    menu.append(MenuItem::separator());
    menu += timeItems(sources.state.livePosition());
    menu.append(MenuItem::separator());
    menu.append(
        {.title = translated("Menu", "Sleep Timer"),
         .submenu = sleepTimes(sources.sleepTimerMinutes(), sources.state.sleepTimerRemaining())});
    menu.append(MenuItem::separator());
    if (isOnlyMenu)
        menu.append(addChannelItem());
    menu.append(settingsItem());
    if (isOnlyMenu) {
        menu.append({checkForUpdatesItem(), aboutItem()});
        menu.append(MenuItem::separator());
    }
    menu.append(quitItem());
    return menu;
}

} // namespace orvane
