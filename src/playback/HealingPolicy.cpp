// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/HealingPolicy.h"

#include <algorithm>
#include <array>

namespace orvane {

namespace {

using std::chrono::seconds;

constexpr std::array delays{seconds{5}, seconds{15}, seconds{60}, seconds{120}};
/// For a site that would mind being asked more often, or a channel that is not expected soon.
constexpr seconds longDelay{300};

} // namespace

seconds healingDelay(int attempts, StreamFailure failure) {
    if (failure == StreamFailure::notLive || failure == StreamFailure::botCheck)
        return longDelay;
    return delays.at(std::min(static_cast<size_t>(std::max(attempts, 0)), delays.size() - 1));
}

} // namespace orvane
