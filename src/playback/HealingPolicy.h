// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "streaming/ladder/StreamFailure.h"

#include <QString>

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>

namespace orvane {

/// Decides how long to wait before a failed channel is tried again: longer with every failure in a
/// series. A series begins with another channel, after a channel has played well, and when the
/// circumstances have changed. A value without a clock of its own: times count from boot.
class HealingPolicy {
public:
    using Time = std::chrono::milliseconds;

    /// The last one is for all later failures.
    static constexpr std::array<Time, 4> delays{Time{5000}, Time{15000}, Time{60000}, Time{120000}};
    /// For a channel that is not live, and for a site that suspects a bot: trying more often is of
    /// no use, or makes it worse.
    static constexpr Time longDelay{300000};
    /// Signs of a return come in quick succession; the time counts from the last one.
    static constexpr Time settleTime{600};
    /// The first delays after a return, as name resolution works later than the network.
    static constexpr std::array<Time, 3> returnDelays{Time{1000}, Time{2000}, Time{4000}};
    /// Later failures have other causes.
    static constexpr Time returnWindow{60000};
    /// A stream that stands still fails only after its buffer is empty and a time limit is over:
    /// less than this is no sign that the channel works.
    static constexpr Time goodPlay{60000};

    void loading(const QString& channelId, Time now);
    void playing(Time now);
    /// Returns the time until the next attempt.
    [[nodiscard]] Time failed(StreamFailure failure, Time now);

    /// The machine has woken up, or its network has come back.
    void returned(Time now);
    /// The next failure is the first of a series.
    void restart();

private:
    void endPlay(Time now);

    QString m_channelId;
    std::optional<Time> m_playingSince;
    std::size_t m_failures = 0;
    std::optional<Time> m_returnedAt;
    std::size_t m_failuresSinceReturn = 0;
};

} // namespace orvane
