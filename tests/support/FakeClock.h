// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Clock.h"

#include <coroutine>
#include <utility>
#include <vector>

namespace orvane::test {

/// A clock that only the test moves. Records the length of every sleep.
class FakeClock final : public Clock {
public:
    enum class Sleep {
        /// Advances the clock at once.
        takesNoTime,
        /// Ends when the test has advanced the clock far enough.
        waitsForTest
    };

    explicit FakeClock(Sleep mode = Sleep::takesNoTime) : m_mode(mode) {}
    FakeClock(const FakeClock&) = delete;
    FakeClock& operator=(const FakeClock&) = delete;
    /// Wakes the sleepers that have been stopped.
    ~FakeClock() override { advance({}); }

    std::vector<std::chrono::milliseconds> sleeps;

    [[nodiscard]] TimePoint now() const override {
        return TimePoint(std::chrono::hours(500'000)) + m_sinceBoot;
    }
    [[nodiscard]] std::chrono::milliseconds sinceBoot() const override { return m_sinceBoot; }
    [[nodiscard]] QCoro::Task<> sleep(std::chrono::milliseconds duration,
                                      std::stop_token stop) override {
        sleeps.push_back(duration);
        if (m_mode == Sleep::takesNoTime) {
            advance(duration);
            co_return;
        }
        const Awaiter awaiter{*this, m_awake + duration, std::move(stop)};
        co_await awaiter;
    }

    /// Wakes the sleepers whose time has come and those that have been stopped.
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

    /// Moves the time on without shortening any sleep, as when the machine is suspended.
    void suspend(std::chrono::milliseconds time) { m_sinceBoot += time; }

private:
    struct Sleeper {
        std::chrono::milliseconds until;
        std::stop_token stop;
        std::coroutine_handle<> coroutine;
    };
    struct Awaiter {
        FakeClock& clock;
        std::chrono::milliseconds until;
        std::stop_token stop;

        [[nodiscard]] bool await_ready() const { return false; }
        void await_suspend(std::coroutine_handle<> coroutine) const {
            clock.m_sleepers.push_back({until, stop, coroutine});
        }
        void await_resume() const {}
    };

    const Sleep m_mode;
    std::chrono::milliseconds m_awake{};
    std::chrono::milliseconds m_sinceBoot{};
    std::vector<Sleeper> m_sleepers;
};

} // namespace orvane::test
