// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <chrono>
#include <optional>

namespace orvane {

/// Decides whether a channel is opened again after the machine or its network was away. A picture
/// that goes on is left alone; one that stands still, a channel that has failed, and one that has
/// been loading since before are opened again, and a few times more while the network finds its
/// feet. A plain value without a clock of its own: times are since the start of the machine.
class ReopenPolicy {
public:
    using Time = std::chrono::milliseconds;

    enum class Situation {
        /// Nobody wants to see anything, or not now.
        notWanted,
        loading,
        playing,
        /// It plays, but nothing comes.
        stuck,
        failed
    };
    enum class Step { wait, reopen, finish };

    /// Signs of a return come in a row; the last one counts.
    static constexpr Time settleTime{600};
    /// A player that has data left again needs no longer than this to go on.
    static constexpr Time stuckLimit{2000};
    /// A load that was younger than this at the return may well succeed.
    static constexpr Time oldLoad{3000};
    /// Before each attempt after the first: the answers to names come later than the addresses.
    static constexpr std::array<Time, 3> retryDelays{Time{1000}, Time{2000}, Time{4000}};
    /// What goes wrong later than this has other reasons.
    static constexpr Time window{60000};

    void returned(Time now);

    /// To be asked over and over until it is finished; `since` is when a channel began to load, to
    /// play or to have failed. Whoever is told to reopen has done so before asking again.
    [[nodiscard]] Step step(Situation situation, Time since, Time now);

private:
    [[nodiscard]] bool isDue(Situation situation, Time since, Time now) const;

    Time m_returnedAt{};
    size_t m_attempts = 0;
    std::optional<Time> m_stuckSince;
};

} // namespace orvane
