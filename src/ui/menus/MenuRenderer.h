// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menus/Menu.h"

class QMenu;

namespace orvane {

class ApplicationActions;

/// Replaces the content of `target`. Choosing an item calls `actions`, which outlives `target`. The
/// Command modifier is shown as the Control key.
void renderMenu(const Menu& menu, ApplicationActions& actions, QMenu& target);

} // namespace orvane
