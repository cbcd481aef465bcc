// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>
#include <optional>

namespace orvane {

/// Decides when a live stream has failed. mpv reports only some faults as such: a refused segment
/// is merely a log line, and a playlist that stops advancing is not even that. Owned by a player,
/// which reports what happens and calls `dueFailure` at the deadline. A plain value without a clock
/// of its own.
class LiveStreamMonitor {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// How mpv ended the stream.
    enum class End { endOfStream, error };

    /// In seconds; nullopt for what the stream does not have.
    struct Position {
        std::optional<double> time;
        std::optional<double> audio;
        bool operator==(const Position&) const = default;
    };

    /// A server that refuses a request has failed if the stream shows nothing for this long.
    static constexpr std::chrono::milliseconds refusalGrace{3000};
    /// The time within which the first frame must be shown.
    static constexpr std::chrono::milliseconds startLimit{30000};
    /// How long a stream may wait for data after its buffer has run empty.
    static constexpr std::chrono::milliseconds stallLimit{15000};
    /// The same limit for a stream that mpv considers playing: its position is polled at
    /// `checkInterval`, and the stream has failed when it stays the same `stallChecks` times.
    static constexpr int stallChecks = 3;
    static constexpr std::chrono::milliseconds checkInterval = stallLimit / stallChecks;
    /// A warning older than this does not explain a failure.
    static constexpr std::chrono::milliseconds warningLifetime{60000};

    struct Failure {
        /// Nullopt if the reason is unknown.
        std::optional<QString> text;
    };

    /// Picture and sound are streams of their own, each of which can stop alone: both must advance.
    void expectBoth() { m_expectsBoth = true; }
    void opened(TimePoint now);
    void logged(const QString& line, TimePoint now);
    void started();
    /// A paused stream does not have to advance.
    void paused(bool isPaused, TimePoint now);
    /// The player has gone to another place of the stream.
    void jumped();
    /// Reports that the buffer has run empty, or has been filled again.
    void starved(bool isStarved, TimePoint now);
    void positioned(Position position);
    /// `reason` is mpv's description of an error.
    [[nodiscard]] Failure ended(End end, const QString& reason, TimePoint now) const;

    /// Returns the failure that is due by now, if any.
    [[nodiscard]] std::optional<Failure> dueFailure(TimePoint now) const;
    /// Returns when to call `dueFailure` next; nullopt if there is no need to.
    [[nodiscard]] std::optional<TimePoint> deadline() const;

private:
    struct Warning {
        QString text;
        TimePoint time;
    };

    [[nodiscard]] std::optional<QString> recentWarning(TimePoint now) const;
    [[nodiscard]] bool isRefused(TimePoint now) const;

    std::optional<TimePoint> m_openedAt;
    std::optional<TimePoint> m_starvedSince;
    std::optional<TimePoint> m_refusedSince;
    std::optional<Warning> m_lastWarning;
    std::optional<Position> m_position;
    int m_checksWithoutAdvance = 0;
    bool m_expectsBoth = false;
    bool m_hasStarted = false;
    bool m_isStarved = false;
    bool m_isPaused = false;
};

/// Returns whether a network warning is an answer of the server, not a failure to reach it.
[[nodiscard]] bool isRefusal(const QString& warning);

/// Returns the part of a log line that describes a network error, without the name of the
/// protocol, and without addresses and long numbers, whose digits could be taken for those of a
/// status; nullopt for any other line.
[[nodiscard]] std::optional<QString> networkWarning(const QString& line);

} // namespace orvane
