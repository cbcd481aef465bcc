// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <chrono>
#include <optional>
#include <variant>

namespace orvane {

/// Decides which channel is resolved ahead, and when: each once, and again after its address has
/// expired only if the user switches channels these minutes; few runs of yt-dlp in all, as nobody
/// may ask for what they find. All times are since the machine booted. A value; main thread.
class PreparationPolicy {
public:
    using Time = std::chrono::milliseconds;

    /// A picture that has played for this long is one that the user stays with for a while.
    static constexpr Time settleTime{5'000};
    static constexpr qsizetype runsAtMost = 8;
    static constexpr Time runsWindow{15 * 60'000};
    static constexpr Time renewalWindow{10 * 60'000};

    /// A channel that may be asked for next.
    struct Candidate {
        QString channelId;
        /// How long its cached address is still valid; nullopt if there is none.
        std::optional<Time> freshFor;
    };

    struct Prepare {
        qsizetype index = 0;
    };
    /// There may be something to do after this time.
    struct Wait {
        Time duration{};
    };
    /// There is nothing to do until something else plays.
    struct Rest {};
    using Step = std::variant<Prepare, Wait, Rest>;

    /// `candidates` are in the order of their importance.
    [[nodiscard]] Step next(const QList<Candidate>& candidates, Time now) const;

    /// The user has gone to another channel.
    void switched(Time now);
    void began(const QString& channelId, Time now);
    /// The run that began was ended before it had a result.
    void abandoned(const QString& channelId);

private:
    /// Returns when the candidate is due; nullopt if it is not to be resolved again.
    [[nodiscard]] std::optional<Time> dueAt(const Candidate& candidate, Time now) const;
    /// Returns when one more run is allowed.
    [[nodiscard]] Time allowedAt(Time now) const;

    std::optional<Time> m_switchedAt;
    /// When the last run for each channel began.
    QHash<QString, Time> m_begun;
    /// When the latest runs began, the oldest first.
    QList<Time> m_runs;
};

} // namespace orvane
