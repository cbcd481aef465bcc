// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <optional>

namespace orvane {

/// Decides whether to reopen the current channel after the machine has woken up or the network has
/// come back. A channel that plays on is left alone; one that is stuck, has failed, or has been
/// loading since before the return is reopened, and retried a few times until the network works. A
/// value without a clock of its own: times count from boot.
class ReopenPolicy {
public:
    using Time = std::chrono::milliseconds;

    enum class Situation {
        /// Stopped or paused.
        inactive,
        loading,
        playing,
        /// Playing, but waiting for data.
        stuck,
        failed
    };
    enum class Step { wait, reopen, finish };

    /// Signs of a return come in quick succession; the time counts from the last one.
    static constexpr Time settleTime{600};
    /// A player that gets data again continues within this time.
    static constexpr Time stuckLimit{2000};
    /// A load that began less than this before the return may still succeed.
    static constexpr Time oldLoad{3000};
    /// Delays before the second and later attempts, as name resolution works later than the
    /// network.
    static constexpr std::array<Time, 3> retryDelays{Time{1000}, Time{2000}, Time{4000}};
    /// Later failures have other causes.
    static constexpr Time window{60000};

    /// Starts watching, or starts again.
    void returned(Time now);

    /// Must be called repeatedly until it returns `finish`; the caller reopens the channel when
    /// told to. `since` is when the channel began to load or play, or failed.
    [[nodiscard]] Step step(Situation situation, Time since, Time now);

private:
    [[nodiscard]] bool isDue(Situation situation, Time since, Time now) const;

    Time m_returnedAt{};
    size_t m_attempts = 0;
    std::optional<Time> m_stuckSince;
};

} // namespace orvane
