// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/StreamResolver.h"

#include "base/Logging.h"
#include "base/TaskScope.h"
#include "model/AppConstants.h"
#include "streaming/tool/YtDlpTool.h"

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// After this many failed calls in a row, the cause may lie in yt-dlp's own cache.
constexpr int failuresBeforeClearingCache = 2;

/// Reads the address from what yt-dlp printed, or the reason why there is none. Ignores the exit
/// status: an address counts even after a failure.
StreamResolver::Result readOutcome(const ProcessOutcome& outcome) {
    if (!outcome) {
        return std::unexpected(
            StreamError::ResolveFailed{u"Failed to run yt-dlp: "_s + outcome.error().reason});
    }
    const QString printed = outcome->standardOutput.text().value_or(QString()).trimmed();
    QUrl url(printed, QUrl::StrictMode);
    if (!printed.isEmpty() && !outcome->standardOutput.isTruncated && url.isValid())
        return url;
    const QString reason = outcome->standardError.text().value_or(u"Unknown error"_s);
    return std::unexpected(StreamError::ResolveFailed{reason.trimmed()});
}

QString pageAddress(const Origin& site, const Channel& channel, StreamResolver::Source source) {
    const std::optional<QString>& videoId = channel.videoId();
    if (source == StreamResolver::Source::fixedVideo && videoId)
        return site.address(u"/watch?v="_s + *videoId);
    return site.address(u"/@"_s + channel.handle() + u"/live"_s);
}

QCoro::Task<> runIgnoringResult(ToolRunner& runner, ProcessRequest request) {
    co_await runner.run(request, std::stop_token());
}

void logResult(const QString& key, const StreamResolver::Result& result) {
    const QString text = result ? result->toString() : errorDescription(result.error());
    qCInfo(logStream).noquote() << key << "->" << withoutSecrets(text);
}

} // namespace

StreamResolver::StreamResolver(std::optional<Origin> site, YtDlpTool& tool, Clock& clock,
                               TaskScope& background)
    : m_site(std::move(site)), m_tool(tool), m_clock(clock), m_background(background) {}

QCoro::Task<StreamResolver::Result> StreamResolver::resolve(Channel channel, Resolution resolution,
                                                            std::stop_token stop) {
    const QString key = cacheKey(channel, resolution);
    const auto cached = m_cache.constFind(key);
    if (cached != m_cache.constEnd() &&
        m_clock.now() - cached->resolvedAt < AppConstants::streamCacheTTL) {
        qCInfo(logStream).noquote() << key << "is in the cache";
        co_return Result(cached->url);
    }

    const Result result = co_await resolveInRounds(channel, resolution, stop);
    if (stop.stop_requested())
        co_return result;
    logResult(key, result);
    if (result) {
        m_cache.insert(key, {*result, m_clock.now()});
        m_consecutiveFailures = 0;
    } else {
        countFailure();
    }
    co_return result;
}

QCoro::Task<StreamResolver::Result>
StreamResolver::resolveInRounds(Channel channel, Resolution resolution, std::stop_token stop) {
    Result result = std::unexpected(StreamError::NoOutput{});
    for (int attempt = 1; attempt <= AppConstants::streamResolveRetries; ++attempt) {
        result = co_await resolveWithYtDlp(channel, resolution, Source::livePage, stop);
        if (!result && channel.videoId() && !stop.stop_requested())
            result = co_await resolveWithYtDlp(channel, resolution, Source::fixedVideo, stop);
        if (result || stop.stop_requested())
            break;
        if (attempt < AppConstants::streamResolveRetries) {
            qCInfo(logStream).noquote() << "round" << attempt << "of" << channel.id() << "failed";
            co_await m_clock.sleep(std::chrono::seconds(attempt), stop);
        }
        if (stop.stop_requested())
            break;
    }
    co_return result;
}

QCoro::Task<StreamResolver::Result> StreamResolver::resolveWithYtDlp(Channel channel,
                                                                     Resolution resolution,
                                                                     Source source,
                                                                     std::stop_token stop) {
    if (!m_site)
        co_return std::unexpected(StreamError::ResolveFailed{u"no video site is set up"_s});
    const std::optional<YtDlpCommand> command = co_await findOrInstallYtDlp();
    if (!command) {
        co_return std::unexpected(
            StreamError::ResolveFailed{u"yt-dlp not found and auto-install failed"_s});
    }
    const QStringList arguments{u"-f"_s,
                                ytdlpFormat(resolution),
                                u"-g"_s,
                                u"--no-playlist"_s,
                                u"--extractor-args"_s,
                                u"youtube:player_client=android,ios"_s,
                                u"--no-check-certificate"_s,
                                pageAddress(*m_site, channel, source)};
    const ProcessRequest request{.program = command->program,
                                 .arguments = command->argumentsFor(arguments),
                                 .environment = std::nullopt};
    const ProcessOutcome outcome = co_await m_tool.runner().run(request, stop);
    co_return readOutcome(outcome);
}

QCoro::Task<std::optional<YtDlpCommand>> StreamResolver::findOrInstallYtDlp() {
    const YtDlpSearch search = YtDlpSearch::of(YtDlpUser::streamResolver);
    std::optional<YtDlpCommand> command = co_await m_tool.find(search);
    if (command)
        co_return command;
    const YtDlpPlan plan = YtDlpPlan::ofStreamResolver();
    const YtDlpTool::Installed installed = co_await m_tool.install(plan);
    if (installed)
        command = *installed;
    co_return command;
}

void StreamResolver::countFailure() {
    ++m_consecutiveFailures;
    const std::optional<YtDlpCommand> command =
        m_tool.known(YtDlpSearch::of(YtDlpUser::streamResolver));
    if (m_consecutiveFailures >= failuresBeforeClearingCache && command)
        runInBackground(command->program, command->argumentsFor({u"--rm-cache-dir"_s}));
}

void StreamResolver::invalidateCache(const Channel& channel) {
    for (const Resolution resolution : allCases<Resolution>)
        m_cache.remove(cacheKey(channel, resolution));
}

void StreamResolver::invalidateAllCache() {
    m_cache.clear();
}

void StreamResolver::updateYtDlpIfNeeded() {
    if (m_didUpdateCheck)
        return;
    m_didUpdateCheck = true;
    runInBackground(
        systemPython(m_tool.runner().host()),
        {u"-m"_s, u"pip"_s, u"install"_s, u"--user"_s, u"--quiet"_s, u"--upgrade"_s, u"yt-dlp"_s});
}

void StreamResolver::runInBackground(QString program, QStringList arguments) {
    m_background.spawn(
        runIgnoringResult(m_tool.runner(), {.program = std::move(program),
                                            .arguments = std::move(arguments),
                                            .environment = std::nullopt,
                                            .standardOutput = ProcessRequest::Stream::discard,
                                            .standardError = ProcessRequest::Stream::discard}));
}

QString StreamResolver::cacheKey(const Channel& channel, Resolution resolution) {
    return channel.id() + u'_' + rawValue(resolution);
}

} // namespace orvane
