// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Clock.h"
#include "streaming/ladder/LadderMemory.h"
#include "streaming/ladder/Rung.h"

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace orvane {

/// Decides on which rung the next call of yt-dlp for a channel starts: where a stream has played
/// with this version of yt-dlp, else on the usual one; and one higher after an address from there
/// was refused twice within a minute. Owned by the composition root; main thread.
class StreamLadder {
public:
    /// Two refusals within this time are no chance.
    static constexpr std::chrono::seconds refusalTime{60};

    /// `clock` must outlive this object. An empty `memoryPath` remembers nothing.
    StreamLadder(const QString& memoryPath, Clock& clock);

    /// Returns the rungs in the order in which the next call for the channel tries them.
    [[nodiscard]] QList<Rung> order(const QString& channelId);

    /// Returns what has played on a higher rung than the usual one, in this run or an earlier one.
    [[nodiscard]] std::optional<LadderMemory::Entry> remembered();

    /// The channel has got its latest address like this.
    void resolved(const QString& channelId, const LadderMemory::Entry& how);
    /// The channel's latest address was refused.
    void refused(const QString& channelId);
    /// The channel plays from its latest address.
    void played(const QString& channelId);

    /// Starts from the usual rung again, because yt-dlp is another one now.
    void forget();

private:
    struct Use {
        LadderMemory::Entry how;
        /// When an address from this rung was refused last.
        std::optional<std::chrono::milliseconds> refusedAt;
        /// Where the next call starts, after a refusal.
        std::optional<Rung> climbsTo;
    };

    LadderMemory m_memory;
    Clock& m_clock;
    /// By the id of the channel.
    QHash<QString, Use> m_uses;
};

/// The way of one address through the ladder: over all rungs that can be used, once.
class Climb {
public:
    explicit Climb(QList<Rung> order) : m_order(std::move(order)) {}

    [[nodiscard]] Rung rung() const { return m_order.first(); }
    /// Goes on to the next rung. Returns false if this was the last one.
    [[nodiscard]] bool next();

private:
    /// Those that are left, the current one first.
    QList<Rung> m_order;
};

} // namespace orvane
