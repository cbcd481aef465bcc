// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menus/MenuSources.h"

namespace orvane {

/// Whether the desktop shows the status item, whose menu has all actions.
enum class StatusItemPresence { present, absent };

/// Builds the context menu of the player window from the current state. Main thread.
namespace ContextMenuBuilder {

/// Without a status item the menu also has the items that only the status menu has otherwise.
[[nodiscard]] Menu build(const MenuSources& sources, StatusItemPresence statusItem);

} // namespace ContextMenuBuilder

} // namespace orvane
