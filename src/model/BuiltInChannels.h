// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"

#include <QList>

namespace orvane {

/// The 23 channels that ship with Orvane, in the order in which every list shows them. Made once on
/// first use and kept; any thread. A value below the preferences and the registry, because both
/// derive defaults from it.
[[nodiscard]] const QList<Channel>& builtInChannels();

} // namespace orvane
