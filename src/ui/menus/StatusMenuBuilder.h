// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menus/MenuSources.h"

namespace orvane::StatusMenuBuilder {

/// Builds the menu of the status item from the current state. Main thread.
[[nodiscard]] Menu build(const MenuSources& sources);

} // namespace orvane::StatusMenuBuilder
