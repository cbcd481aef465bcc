// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace orvane::test {

/// Runs the event loop until the condition holds; false when it does not within 20 seconds.
[[nodiscard]] bool runUntil(const std::function<bool()>& condition);

/// Lets everything that is due now happen.
void settle();

} // namespace orvane::test
