// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Clock.h"

#include <vector>

namespace orvane::test {

/// Stands still until it is moved; sleeping takes no time and is written down.
class FakeClock final : public Clock {
public:
    TimePoint time{std::chrono::hours(500'000)};
    std::vector<std::chrono::milliseconds> sleeps;

    [[nodiscard]] TimePoint now() const override { return time; }
    [[nodiscard]] std::chrono::milliseconds sinceBoot() const override {
        return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
    }
    [[nodiscard]] QCoro::Task<> sleep(std::chrono::milliseconds duration,
                                      std::stop_token) override {
        sleeps.push_back(duration);
        co_return;
    }
};

} // namespace orvane::test
