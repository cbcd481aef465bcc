// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "streaming/ladder/StreamFailure.h"

#include <chrono>

namespace orvane {

/// Returns how long to wait before a failed channel is tried again. `attempts` is the number of
/// attempts since it played well. Pure; any thread.
[[nodiscard]] std::chrono::seconds healingDelay(int attempts, StreamFailure failure);

} // namespace orvane
