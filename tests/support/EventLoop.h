// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace orvane::test {

/// Runs the event loop until the condition holds; returns false if it does not within 20 seconds.
[[nodiscard]] bool runUntil(const std::function<bool()>& condition);

/// Processes all pending events, including deferred deletions.
void settle();

} // namespace orvane::test
