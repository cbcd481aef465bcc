// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Clock.h"
#include "base/Origin.h"
#include "model/Channel.h"
#include "model/Resolution.h"
#include "streaming/StreamError.h"
#include "streaming/tool/YtDlpCommand.h"

#include <QCoroTask>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <expected>
#include <optional>
#include <stop_token>

namespace orvane {

class TaskScope;
class YtDlpTool;

/// Turns a channel and a resolution into the address of a playable stream by running yt-dlp, and
/// caches the address for 900 seconds. It tries the channel's live page first and the fixed video
/// id second, in three rounds with growing pauses. Installs yt-dlp if it is missing. Owned by the
/// composition root; main thread, which it never blocks: calls interleave, and two for the same key
/// may both run yt-dlp. A failure is a `StreamError` whose text is meant for the user.
class StreamResolver {
public:
    /// Without a site every call fails.
    StreamResolver(std::optional<Origin> site, YtDlpTool& tool, Clock& clock,
                   TaskScope& background);

    using Result = std::expected<QUrl, StreamError::Value>;

    /// The page of a channel that is passed to yt-dlp.
    enum class Source { livePage, fixedVideo };

    /// A stop ends yt-dlp; the result is then meaningless, and the call counts neither as a success
    /// nor as a failure.
    [[nodiscard]] QCoro::Task<Result> resolve(Channel channel, Resolution resolution,
                                              std::stop_token stop);

    /// Removes the addresses of a channel at every resolution from the cache.
    void invalidateCache(const Channel& channel);
    void invalidateAllCache();

    /// Upgrades yt-dlp's Python package in the background, at most once in a run.
    void updateYtDlpIfNeeded();

private:
    struct CacheEntry {
        QUrl url;
        Clock::TimePoint resolvedAt;
    };

    [[nodiscard]] static QString cacheKey(const Channel& channel, Resolution resolution);
    [[nodiscard]] QCoro::Task<Result> resolveInRounds(Channel channel, Resolution resolution,
                                                      std::stop_token stop);
    [[nodiscard]] QCoro::Task<Result> resolveWithYtDlp(Channel channel, Resolution resolution,
                                                       Source source, std::stop_token stop);
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> findOrInstallYtDlp();
    void countFailure();
    void runInBackground(QString program, QStringList arguments);

    std::optional<Origin> m_site;
    YtDlpTool& m_tool;
    Clock& m_clock;
    TaskScope& m_background;
    QHash<QString, CacheEntry> m_cache;
    bool m_didUpdateCheck = false;
    int m_consecutiveFailures = 0;
};

} // namespace orvane
