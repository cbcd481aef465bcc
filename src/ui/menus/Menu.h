// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

namespace orvane {

/// What a menu item does when it is chosen; each is a method of `ApplicationActions`.
enum class MenuAction {
    none,
    channelSelected,
    resolutionSelected,
    sleepTimer,
    cancelSleepTimer,
    openSettings,
    addChannel,
    toggleGhostMode,
    goBack,
    goLive,
    toggleSoundOnly,
    showAbout,
    checkForUpdates,
    terminate
};

/// The modifier of a key equivalent.
enum class ModifierMask { none, command };

struct MenuItem;
using Menu = QList<MenuItem>;

/// A menu item as a value, so that whole menus can be compared. An item with neither an action nor
/// a submenu is a header: it is shown disabled.
struct MenuItem {
    QString title = {};
    MenuAction action = MenuAction::none;
    /// The action's argument: the id of a channel or the raw value of a resolution.
    QString representedObject = {};
    /// The action's argument in minutes.
    int tag = 0;
    /// Shown beside the title; empty for none. The key acts while the menu is open.
    QString keyEquivalent = {};
    ModifierMask modifierMask = ModifierMask::command;
    bool isOn = false;
    /// False for an action that cannot be carried out at the moment.
    bool isEnabled = true;
    /// In steps.
    int indentationLevel = 0;
    Menu submenu = {};
    bool isSeparator = false;

    [[nodiscard]] static MenuItem separator() { return {.isSeparator = true}; }

    friend bool operator==(const MenuItem& a, const MenuItem& b);
};

/// Returns the menu with a submenu in the place of each header and the items up to the separator
/// after it, for screens on which the whole menu would not fit.
[[nodiscard]] Menu withSubmenus(const Menu& menu);

} // namespace orvane
