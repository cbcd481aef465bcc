// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>

namespace orvane {

/// Decides whether to reopen the current channel after the machine has woken up or the network has
/// come back. A channel that plays on is left alone; one that is stuck, or has been loading since
/// before the return, is reopened, a few times at most. What has failed is retried by
/// `ChannelHealing`. A value without a clock of its own: times count from boot.
class ReopenPolicy {
public:
    using Time = std::chrono::milliseconds;

    enum class Situation {
        /// Stopped, paused or failed.
        inactive,
        loading,
        playing,
        /// Playing, but waiting for data.
        stuck
    };
    enum class Step { wait, reopen, finish };

    /// Signs of a return come in quick succession; the time counts from the last one.
    static constexpr Time settleTime{600};
    /// A player that gets data again continues within this time.
    static constexpr Time stuckLimit{2000};
    /// A load that began less than this before the return may still succeed.
    static constexpr Time oldLoad{3000};
    static constexpr std::size_t maximumAttempts = 4;
    /// Later faults have other causes.
    static constexpr Time window{60000};

    /// Starts watching, or starts again.
    void returned(Time now);

    /// Must be called repeatedly until it returns `finish`; the caller reopens the channel when
    /// told to. `since` is when the channel began to load or play.
    [[nodiscard]] Step step(Situation situation, Time since, Time now);

private:
    [[nodiscard]] bool isDue(Situation situation, Time since, Time now) const;

    Time m_returnedAt{};
    std::size_t m_attempts = 0;
    std::optional<Time> m_stuckSince;
};

} // namespace orvane
