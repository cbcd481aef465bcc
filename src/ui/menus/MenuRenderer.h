// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menus/Menu.h"

class QMenu;

namespace orvane {

class ApplicationActions;

/// Replaces what is in `target` by the items; choosing one calls `actions`, which outlives the
/// target. Command is the Control key here.
void renderMenu(const Menu& menu, ApplicationActions& actions, QMenu& target);

} // namespace orvane
