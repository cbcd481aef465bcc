// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Clock.h"
#include "base/Origin.h"
#include "base/StreamAddress.h"
#include "model/Channel.h"
#include "model/Resolution.h"
#include "platform/system/ProcessRequest.h"
#include "streaming/StreamError.h"
#include "streaming/ladder/StreamLadder.h"
#include "streaming/ladder/StreamQuery.h"

#include <QCoroTask>
#include <QHash>
#include <QString>
#include <QStringList>

#include <expected>
#include <optional>
#include <stop_token>

namespace orvane {

class TaskScope;
class YtDlpTool;

/// Turns a channel and a resolution into the address of a playable stream by running yt-dlp, and
/// caches the address for 900 seconds. It tries the channel's live page first and the fixed video
/// id second, in three rounds with growing pauses, and climbs the ladder at once when the site or
/// yt-dlp has aged. Installs yt-dlp if it is missing. Owned by the composition root; main thread,
/// which it never blocks: calls interleave, and two for the same key may both run yt-dlp. A failure
/// is a `StreamError` whose text is meant for the user.
class StreamResolver {
public:
    /// Without a site every call fails.
    StreamResolver(std::optional<Origin> site, YtDlpTool& tool, StreamLadder& ladder, Clock& clock,
                   TaskScope& background);

    using Result = std::expected<StreamAddress, StreamError::Value>;

    /// The page of a channel that is passed to yt-dlp.
    enum class Source { livePage, fixedVideo };

    /// A stop ends yt-dlp; the result is then meaningless, and the call counts neither as a success
    /// nor as a failure.
    [[nodiscard]] QCoro::Task<Result> resolve(Channel channel, Resolution resolution,
                                              std::stop_token stop);

    /// Puts the address of a channel that may be asked for next into the cache, by one call of the
    /// yt-dlp that is known already, at idle priority. A failure changes and counts nothing. A stop
    /// ends yt-dlp.
    [[nodiscard]] QCoro::Task<> prepare(Channel channel, Resolution resolution,
                                        std::stop_token stop);
    /// Returns when the cached address of a channel expires, nullopt if there is none or it has.
    [[nodiscard]] std::optional<Clock::TimePoint> freshUntil(const Channel& channel,
                                                             Resolution resolution) const;

    /// Removes the addresses of a channel at every resolution from the cache.
    void invalidateCache(const Channel& channel);
    void invalidateAllCache();

    /// The channel plays from its latest address.
    void played(const Channel& channel);
    /// The channel's latest address was refused: takes it from the cache, and the next call may
    /// climb the ladder.
    void refused(const Channel& channel);

    /// Upgrades yt-dlp's Python package in the background, at most once in a run.
    void updateYtDlpIfNeeded();

private:
    struct CacheEntry {
        StreamAddress address;
        Clock::TimePoint resolvedAt;
    };
    /// What one call of `resolve` asks for, and how far it has climbed.
    struct Request {
        Channel channel;
        Resolution resolution;
        Climb climb;
        std::stop_token stop;
        /// The last rung that yt-dlp could be run on.
        std::optional<Rung> usable;
        /// Whether a call had to be ended, as the next one would have to be.
        bool isHopeless = false;
    };
    /// What runs on a rung: yt-dlp, and its version if it is not the usual one.
    struct RungTool {
        YtDlpCommand command;
        QString version;
        QStringList runtimes;
    };

    [[nodiscard]] static QString cacheKey(const Channel& channel, Resolution resolution);
    [[nodiscard]] bool isFresh(const CacheEntry& entry) const;
    [[nodiscard]] QCoro::Task<Result> resolveInRounds(Request& request);
    [[nodiscard]] QCoro::Task<Result> resolveWithYtDlp(Request& request, Source source);
    [[nodiscard]] QCoro::Task<Result> resolveOnRung(Request& request, QString page, RungTool tool);
    /// Runs yt-dlp and reads its answer into `result`.
    [[nodiscard]] QCoro::Task<ProcessOutcome> call(Request& request, ProcessRequest process,
                                                   StreamQuery query, Result& result);
    [[nodiscard]] QCoro::Task<std::optional<RungTool>> toolFor(Rung rung);
    [[nodiscard]] QCoro::Task<std::optional<RungTool>> newestTool(Rung rung);
    [[nodiscard]] QCoro::Task<QStringList> usableRuntimes(YtDlpCommand command, QString version);
    [[nodiscard]] QCoro::Task<> checkMemory();
    void countFailure();
    void runInBackground(QString program, QStringList arguments);

    std::optional<Origin> m_site;
    YtDlpTool& m_tool;
    StreamLadder& m_ladder;
    Clock& m_clock;
    TaskScope& m_background;
    QHash<QString, CacheEntry> m_cache;
    bool m_didUpdateCheck = false;
    bool m_hasCheckedMemory = false;
    int m_consecutiveFailures = 0;
    /// Whether a yt-dlp has the option for JavaScript runtimes, by its program and version.
    QHash<QString, bool> m_knowsRuntimes;
};

} // namespace orvane
