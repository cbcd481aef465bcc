// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"

#include <QList>

namespace orvane {

/// The 23 channels that ship with Orvane, in display order. Built on first use and kept; any
/// thread. In the model layer because both the preferences and the registry derive defaults from
/// it.
[[nodiscard]] const QList<Channel>& builtInChannels();

} // namespace orvane
