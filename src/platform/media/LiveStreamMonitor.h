// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>
#include <optional>

namespace orvane {

/// Decides when a live stream has failed. The media library says so only for some faults: a refused
/// segment is no more than a log line, a list that stops advancing is not even that. Owned by a
/// player, which feeds it what it hears and asks again at the time it names. A plain value without
/// a clock of its own.
class LiveStreamMonitor {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// How the media library ended the stream.
    enum class End { endOfStream, error };

    /// A server that refuses, and whose stream shows nothing for this long, has refused it all.
    static constexpr std::chrono::milliseconds refusalGrace{3000};
    /// A server that has sent nothing to show for this long is given up.
    static constexpr std::chrono::milliseconds startLimit{30000};
    /// The same for a stream that has run dry in the middle of play.
    static constexpr std::chrono::milliseconds stallLimit{15000};
    /// Likewise for one that the library takes for playing: it is asked for its position as often
    /// as this, and gives the same one so many times.
    static constexpr int stallChecks = 3;
    static constexpr std::chrono::milliseconds checkInterval = stallLimit / stallChecks;
    /// A warning older than this does not explain a failure.
    static constexpr std::chrono::milliseconds warningLifetime{60000};

    struct Failure {
        /// Nothing when no reason is known.
        std::optional<QString> text;
    };

    void opened(TimePoint now);
    void logged(const QString& line, TimePoint now);
    void pictureArrived();
    /// A paused stream is not expected to advance.
    void paused(bool isPaused, TimePoint now);
    void starved(bool isStarved, TimePoint now);
    /// `position` is any text that is another one as soon as the stream has advanced.
    void positioned(const QString& position);
    /// `reason` is the library's own word for an error.
    [[nodiscard]] Failure ended(End end, const QString& reason, TimePoint now) const;

    /// The failure that is due by now, if any.
    [[nodiscard]] std::optional<Failure> dueFailure(TimePoint now) const;
    /// When to ask next, if ever.
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
    QString m_position;
    int m_checksWithoutAdvance = 0;
    bool m_hasPicture = false;
    bool m_isStarved = false;
    bool m_isPaused = false;
};

/// Whether a network warning is the server's own answer, not an accident on the way to it.
[[nodiscard]] bool isRefusal(const QString& warning);

/// The part of a log line that tells of a fault of the network, without the name of the protocol;
/// nothing for any other line.
[[nodiscard]] std::optional<QString> networkWarning(const QString& line);

} // namespace orvane
