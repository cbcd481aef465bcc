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
    showAbout,
    checkForUpdates,
    terminate
};

/// What is pressed together with the letter of a key equivalent.
enum class ModifierMask { none, command };

struct MenuItem;
using Menu = QList<MenuItem>;

/// A line of a menu as a value, so that whole menus can be compared. A line with neither an action
/// nor a submenu is a header: it is shown and cannot be chosen.
struct MenuItem {
    QString title = {};
    MenuAction action = MenuAction::none;
    /// What the action is about: the id of a channel or the raw value of a resolution.
    QString representedObject = {};
    /// What the action is about: minutes.
    int tag = 0;
    /// Shown beside the title; empty for none. The menu itself does not listen to it.
    QString keyEquivalent = {};
    ModifierMask modifierMask = ModifierMask::command;
    bool isOn = false;
    /// Steps.
    int indentationLevel = 0;
    Menu submenu = {};
    bool isSeparator = false;

    [[nodiscard]] static MenuItem separator() { return {.isSeparator = true}; }

    friend bool operator==(const MenuItem& a, const MenuItem& b);
};

} // namespace orvane
