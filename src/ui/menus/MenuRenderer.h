// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menus/Menu.h"

class QMenu;

namespace orvane {

class ApplicationActions;

/// Gives `target` the content of `menu`. Titles and marks change in place. An open menu keeps other
/// entries until it is rendered again, before it is next shown. Choosing an item calls `actions`,
/// which outlives `target`. The Command modifier is shown as the Control key.
void renderMenu(const Menu& menu, ApplicationActions& actions, QMenu& target);

/// The same, with the categories as submenus if the menu would be higher than `height` pixels.
void renderMenuWithin(int height, const Menu& menu, ApplicationActions& actions, QMenu& target);

} // namespace orvane
