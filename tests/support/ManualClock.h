// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Clock.h"

#include <coroutine>
#include <utility>
#include <vector>

namespace orvane::test {

/// Stands still until it is moved; whoever sleeps wakes up when it has been moved far enough.
class ManualClock final : public Clock {
public:
    ManualClock() = default;
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;
    /// Those who were stopped and have not woken up yet do so.
    ~ManualClock() override { advance({}); }

    [[nodiscard]] TimePoint now() const override {
        return TimePoint(std::chrono::hours(500'000)) + m_sinceBoot;
    }
    [[nodiscard]] std::chrono::milliseconds sinceBoot() const override { return m_sinceBoot; }
    [[nodiscard]] QCoro::Task<> sleep(std::chrono::milliseconds duration,
                                      std::stop_token stop) override {
        const Bed bed{*this, m_awake + duration, std::move(stop)};
        co_await bed;
    }

    /// Wakes those who sleep no longer than that, and those who were stopped.
    void advance(std::chrono::milliseconds time) {
        m_awake += time;
        m_sinceBoot += time;
        std::vector<Sleeper> all = std::exchange(m_sleepers, {});
        for (const Sleeper& sleeper : all) {
            if (sleeper.until <= m_awake || sleeper.stop.stop_requested())
                sleeper.coroutine.resume();
            else
                m_sleepers.push_back(sleeper);
        }
    }

    /// Nobody's sleep gets shorter meanwhile.
    void suspend(std::chrono::milliseconds time) { m_sinceBoot += time; }

private:
    struct Sleeper {
        std::chrono::milliseconds until;
        std::stop_token stop;
        std::coroutine_handle<> coroutine;
    };
    struct Bed {
        ManualClock& clock;
        std::chrono::milliseconds until;
        std::stop_token stop;

        [[nodiscard]] bool await_ready() const { return false; }
        void await_suspend(std::coroutine_handle<> coroutine) const {
            clock.m_sleepers.push_back({until, stop, coroutine});
        }
        void await_resume() const {}
    };

    std::chrono::milliseconds m_awake{};
    std::chrono::milliseconds m_sinceBoot{};
    std::vector<Sleeper> m_sleepers;
};

} // namespace orvane::test
