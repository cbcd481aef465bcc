// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <optional>

namespace orvane {

/// Tells how far behind the live edge a viewer is, and where in the stream "ten seconds back" and
/// "live" are. The edge moves on with the clock between two segments, and with what arrives. A
/// stream whose timestamps start anew has several stretches of time: only the one that is shown can
/// be compared. Owned by a player, which reports what it sees each second. A plain value without a
/// clock of its own.
class LiveEdge {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Seconds = std::chrono::duration<double>;

    /// In seconds of the stream's own time.
    struct Sample {
        double position;
        /// The first key frame that is kept; nullopt if the player can go nowhere.
        std::optional<double> start;
        /// The last packet.
        double end;
        bool isAdvancing;
    };

    void sampled(const Sample& sample, TimePoint now);
    /// The viewer pauses, and is no longer live from then on.
    void pause() { m_isLive = false; }
    /// The player goes to this place, which one of the functions below has returned.
    void jumped(double target);

    [[nodiscard]] bool isLive() const { return m_isLive; }
    /// Zero while live.
    [[nodiscard]] Seconds behind() const { return m_isLive ? Seconds(0) : m_behind; }
    /// How much before the position is kept, as far back as the last break.
    [[nodiscard]] Seconds kept() const;
    /// How much has been played since the position has passed a break; nullopt if it has not. What
    /// lies before the break cannot be reached any more.
    [[nodiscard]] std::optional<Seconds> sinceBreak() const;
    /// How far the position at live is behind the last packet.
    [[nodiscard]] Seconds lead() const { return m_lead; }

    /// Returns the place so much earlier, or as early as possible; negative is later. Nullopt if
    /// nothing is kept there.
    [[nodiscard]] std::optional<double> placeBack(Seconds distance) const;
    /// Returns nullopt if live cannot be reached but by opening the stream again.
    [[nodiscard]] std::optional<double> placeOfLive() const;

private:
    /// A jump that the player has been asked for.
    struct Jump {
        double target;
        /// Until it must have been made.
        int samplesLeft;
    };

    [[nodiscard]] Seconds followEdge(const Sample& sample, TimePoint now);
    void followPosition(const Sample& sample, Seconds passed);
    [[nodiscard]] static bool isOnTheWay(Jump& jump, double position, Seconds passed);
    void compare(Seconds distance, Seconds passed, bool isAdvancing);

    std::optional<Sample> m_last;
    TimePoint m_at;
    /// The last packet, as if it had arrived without the wait for a whole segment.
    double m_edge = 0;
    Seconds m_lead{};
    Seconds m_behind{};
    /// Where the position was first seen after a break.
    std::optional<double> m_begin;
    /// Breaks of the time between the position and the edge.
    int m_breaks = 0;
    bool m_isLive = true;
    std::optional<Jump> m_jump;
};

} // namespace orvane
