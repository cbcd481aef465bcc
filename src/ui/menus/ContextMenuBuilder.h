// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menus/MenuSources.h"

namespace orvane {

/// Whether the desktop shows the status item, and with it the menu that holds everything.
enum class StatusItemPresence { present, absent };

/// Builds the menu that the player window shows on a right click, anew from the current state each
/// time. Main thread.
namespace ContextMenuBuilder {

/// Without a status item it also has what could not be reached otherwise.
[[nodiscard]] Menu build(const MenuSources& sources, StatusItemPresence statusItem);

} // namespace ContextMenuBuilder

} // namespace orvane
