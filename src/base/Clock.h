// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>

#include <chrono>
#include <stop_token>

namespace orvane {

/// Reads the time and sleeps. An interface so that tests need not wait. Main thread.
class Clock {
public:
    using TimePoint = std::chrono::system_clock::time_point;

    virtual ~Clock() = default;

    /// Wall clock.
    [[nodiscard]] virtual TimePoint now() const = 0;

    /// Time since the machine booted, including the time for which it was suspended.
    [[nodiscard]] virtual std::chrono::milliseconds sinceBoot() const = 0;

    /// Ends after `duration`, or soon after `stop` is requested; the caller checks `stop` to tell
    /// the two apart.
    [[nodiscard]] virtual QCoro::Task<> sleep(std::chrono::milliseconds duration,
                                              std::stop_token stop) = 0;
};

/// The system clock, sleeping in the Qt event loop.
class SystemClock final : public Clock {
public:
    [[nodiscard]] TimePoint now() const override;
    [[nodiscard]] std::chrono::milliseconds sinceBoot() const override;
    [[nodiscard]] QCoro::Task<> sleep(std::chrono::milliseconds duration,
                                      std::stop_token stop) override;
};

} // namespace orvane
