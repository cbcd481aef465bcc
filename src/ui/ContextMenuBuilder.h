// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/Menu.h"

namespace orvane {

class AppState;
class ChannelRegistry;
class Preferences;

/// Builds the menu that the player window shows on a right click, anew from the current state each
/// time. Main thread.
namespace ContextMenuBuilder {

[[nodiscard]] Menu build(const ChannelRegistry& registry, const Preferences& preferences,
                         const AppState& state);

} // namespace ContextMenuBuilder

} // namespace orvane
