// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>

#include <chrono>
#include <stop_token>

namespace orvane {

/// Tells the time and waits. Time is a collaborator so that tests never wait. Main thread.
class Clock {
public:
    using TimePoint = std::chrono::system_clock::time_point;

    virtual ~Clock() = default;

    /// Wall clock.
    [[nodiscard]] virtual TimePoint now() const = 0;

    /// Time since the machine was started, the time included for which it was suspended.
    [[nodiscard]] virtual std::chrono::milliseconds sinceBoot() const = 0;

    /// Ends after `duration`, or soon after `stop` is requested. The caller asks `stop` which it
    /// was.
    [[nodiscard]] virtual QCoro::Task<> sleep(std::chrono::milliseconds duration,
                                              std::stop_token stop) = 0;
};

/// The machine's own clock and event loop.
class SystemClock final : public Clock {
public:
    [[nodiscard]] TimePoint now() const override;
    [[nodiscard]] std::chrono::milliseconds sinceBoot() const override;
    [[nodiscard]] QCoro::Task<> sleep(std::chrono::milliseconds duration,
                                      std::stop_token stop) override;
};

} // namespace orvane
