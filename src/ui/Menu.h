// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <optional>

class QMenu;

namespace orvane {

class ApplicationActions;

/// What a menu item does when it is chosen; each is a method of `ApplicationActions`.
enum class MenuAction { none, channelSelected };

/// A line of a menu as a value, so that whole menus can be compared.
struct MenuItem {
    QString title;
    /// A line without an action is a header: it is shown and cannot be chosen.
    MenuAction action = MenuAction::none;
    /// What the action is about, such as the id of a channel.
    QString representedObject = {};
    bool isOn = false;
    /// Steps.
    int indentationLevel = 0;
    bool isSeparator = false;

    [[nodiscard]] static MenuItem separator() { return {.title = {}, .isSeparator = true}; }

    friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

using Menu = QList<MenuItem>;

/// Fills `target` with the items; choosing one calls `actions`, which outlives the target.
void renderMenu(const Menu& menu, ApplicationActions& actions, QMenu& target);

} // namespace orvane
