// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Clock.h"
#include "model/Channel.h"
#include "model/Resolution.h"
#include "streaming/StreamError.h"
#include "streaming/YtDlpLocator.h"

#include <QCoroTask>
#include <QHash>
#include <QString>
#include <QUrl>

#include <expected>
#include <optional>
#include <stop_token>

namespace orvane {

class TaskScope;

/// Turns a channel and a quality into the address of a playable stream by running yt-dlp, and
/// remembers the address for 900 seconds. It tries the channel's live page first and the fixed
/// video id second, in three rounds with growing pauses. Owned by the composition root; main
/// thread, where it never blocks: calls interleave, and two for the same key may both run yt-dlp. A
/// failure is a `StreamError` whose text is meant for the person.
class StreamResolver {
public:
    /// Without a site every resolve fails.
    StreamResolver(std::optional<Origin> site, HostFileSystem host, ProcessRunner& processes,
                   Clock& clock, TaskScope& background);

    using Result = std::expected<QUrl, StreamError::Value>;

    /// The page of a channel that yt-dlp is given.
    enum class Source { livePage, fixedVideo };

    /// When `stop` is requested, yt-dlp is ended, the result means nothing, and the call counts
    /// neither as a success nor as a failure.
    [[nodiscard]] QCoro::Task<Result> resolve(Channel channel, Resolution resolution,
                                              std::stop_token stop);

    /// Forgets the addresses of a channel at every resolution.
    void invalidateCache(const Channel& channel);
    void invalidateAllCache();

    /// Starts an upgrade of yt-dlp's Python package in the background, at most once in a run.
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
    void countFailure();
    void runInBackground(QString program, QStringList arguments);

    std::optional<Origin> m_site;
    ProcessRunner& m_processes;
    Clock& m_clock;
    TaskScope& m_background;
    YtDlpLocator m_locator;
    QHash<QString, CacheEntry> m_cache;
    bool m_didUpdateCheck = false;
    int m_consecutiveFailures = 0;
};

} // namespace orvane
