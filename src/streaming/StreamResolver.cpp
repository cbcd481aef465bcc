// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/StreamResolver.h"

#include "base/Logging.h"
#include "base/TaskScope.h"
#include "model/AppConstants.h"
#include "streaming/YtDlpConfiguration.h"
#include "streaming/ladder/StreamFailure.h"
#include "streaming/tool/YtDlpTool.h"

#include <memory>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// After this many failed calls in a row, the cause may lie in yt-dlp's own cache.
constexpr int failuresBeforeClearingCache = 2;

/// For a call that a configuration of yt-dlp's own may have turned into a download without end. No
/// other call has a limit.
constexpr std::chrono::seconds configuredCallLimit{90};

/// Reads the address from what yt-dlp printed, or the reason why there is none. Ignores the exit
/// status: an address counts even after a failure.
StreamResolver::Result readOutcome(const StreamQuery& query, const ProcessOutcome& outcome) {
    if (!outcome) {
        return std::unexpected(StreamError::ResolveFailed{QLatin1StringView(FailurePrefix::notRun) +
                                                          outcome.error().reason});
    }
    const CapturedOutput& output = outcome->standardOutput;
    std::optional<StreamAddress> address = query.read(output.text().value_or(QString()));
    if (address && !output.isTruncated)
        return *std::move(address);
    const QString reason = outcome->standardError.text().value_or(
        QString::fromLatin1(QT_TRANSLATE_NOOP("Failure", "Unknown error")));
    return std::unexpected(StreamError::ResolveFailed{reason.trimmed()});
}

/// Adds to the failure of a call that yt-dlp's own configuration turned into something else, which
/// has an output but no address, or did not end.
StreamResolver::Result withObstacle(StreamResolver::Result result, const ProcessOutcome& outcome,
                                    const QString& configuration, bool wasEnded) {
    const bool isSomethingElse =
        wasEnded || (!result && outcome && !outcome->standardOutput.bytes.trimmed().isEmpty());
    if (!isSomethingElse)
        return result;
    QString reason = QLatin1StringView(FailurePrefix::configuration) + configuration;
    const QString said =
        outcome ? outcome->standardError.text().value_or(QString()).trimmed() : QString();
    if (!said.isEmpty())
        reason += u'\n' + said;
    return std::unexpected(StreamError::ResolveFailed{reason});
}

QCoro::Task<> endAtLimit(Clock& clock, std::stop_token isOver, std::stop_source child,
                         std::shared_ptr<bool> wasEnded) {
    co_await clock.sleep(configuredCallLimit, isOver);
    if (isOver.stop_requested() || child.stop_requested())
        co_return;
    *wasEnded = true;
    child.request_stop();
}

bool isOutdated(const StreamResolver::Result& result) {
    return !result && streamFailureOf(errorDescription(result.error())) == StreamFailure::outdated;
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

QCoro::Task<> upgrade(YtDlpTool& tool, QStringList arguments) {
    const QString python = systemPython(tool.runner().host());
    const std::optional<QProcessEnvironment> inherited;
    const bool succeeded = co_await tool.runner().install(python, arguments, inherited);
    if (succeeded)
        tool.becameNewer();
}

void logResult(const QString& key, const StreamResolver::Result& result) {
    const QString text = result ? result->picture.toString() : errorDescription(result.error());
    qCInfo(logStream).noquote() << key << "->" << withoutSecrets(text);
}

} // namespace

StreamResolver::StreamResolver(std::optional<Origin> site, YtDlpTool& tool, StreamLadder& ladder,
                               Clock& clock, TaskScope& background)
    : m_site(std::move(site)),
      m_tool(tool),
      m_ladder(ladder),
      m_clock(clock),
      m_background(background) {}

QCoro::Task<StreamResolver::Result> StreamResolver::resolve(Channel channel, Resolution resolution,
                                                            std::stop_token stop) {
    const QString key = cacheKey(channel, resolution);
    const auto cached = m_cache.constFind(key);
    if (cached != m_cache.constEnd() && isFresh(*cached)) {
        qCInfo(logStream).noquote() << key << "is in the cache";
        co_return Result(cached->address);
    }

    Request request{.channel = channel,
                    .resolution = resolution,
                    .climb = Climb(m_ladder.order(channel.id())),
                    .stop = stop,
                    .usable = std::nullopt};
    const Result result = co_await resolveInRounds(request);
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

bool StreamResolver::isFresh(const CacheEntry& entry) const {
    // Nothing is known about the age of an address from the future: the clock went back.
    const auto age = m_clock.now() - entry.resolvedAt;
    return age >= Clock::TimePoint::duration::zero() && age < AppConstants::streamCacheTTL;
}

QCoro::Task<StreamResolver::Result> StreamResolver::resolveInRounds(Request& request) {
    const Channel& channel = request.channel;
    Result result = std::unexpected(StreamError::NoOutput{});
    for (int attempt = 1; attempt <= AppConstants::streamResolveRetries; ++attempt) {
        result = co_await resolveWithYtDlp(request, Source::livePage);
        const bool hasOther = channel.videoId() && !request.isHopeless;
        if (!result && hasOther && !request.stop.stop_requested())
            result = co_await resolveWithYtDlp(request, Source::fixedVideo);
        if (result || request.isHopeless || request.stop.stop_requested())
            break;
        if (attempt < AppConstants::streamResolveRetries) {
            qCInfo(logStream).noquote() << "round" << attempt << "of" << channel.id() << "failed";
            co_await m_clock.sleep(std::chrono::seconds(attempt), request.stop);
        }
        if (request.stop.stop_requested())
            break;
    }
    co_return result;
}

QCoro::Task<StreamResolver::Result> StreamResolver::resolveWithYtDlp(Request& request,
                                                                     Source source) {
    if (!m_site)
        co_return std::unexpected(StreamError::ResolveFailed{
            QString::fromLatin1(QT_TRANSLATE_NOOP("Failure", "no video site is set up"))});
    const QString page = pageAddress(*m_site, request.channel, source);
    Result result = std::unexpected(StreamError::ResolveFailed{QString::fromLatin1(
        QT_TRANSLATE_NOOP("Failure", "yt-dlp not found and auto-install failed"))});
    while (true) {
        const Rung rung = request.climb.rung();
        const std::optional<RungTool> tool = co_await toolFor(rung);
        if (tool) {
            request.usable = rung;
            result = co_await resolveOnRung(request, page, *tool);
        }
        const bool isOver = tool ? !isOutdated(result) : rung == Rung::usual;
        if (isOver || request.isHopeless || request.stop.stop_requested())
            break;
        if (!request.climb.next()) {
            // All have been tried: the calls that are left repeat the last one.
            request.climb = Climb({request.usable.value_or(rung)});
            break;
        }
    }
    co_return result;
}

QCoro::Task<StreamResolver::Result> StreamResolver::resolveOnRung(Request& request, QString page,
                                                                  RungTool tool) {
    const Rung rung = request.climb.rung();
    const StreamQuery query{
        .rung = rung, .resolution = request.resolution, .page = page, .runtimes = tool.runtimes};
    const YtDlpPlan plan = YtDlpPlan::ofStreamResolver();
    Result result = std::unexpected(StreamError::NoOutput{});
    std::optional<YtDlpCommand> command = tool.command;
    while (command) {
        tool.command = *command;
        const ProcessRequest process{.program = command->program,
                                     .arguments = command->argumentsFor(query.arguments()),
                                     .environment = std::nullopt};
        const ProcessOutcome outcome = co_await call(request, process, query, result);
        const bool mayBeBroken = rung == Rung::usual && seemsNotToRun(outcome);
        if (result || request.stop.stop_requested() || request.isHopeless || !mayBeBroken)
            break;
        command = co_await m_tool.replaceIfBroken(*command, plan);
    }
    if (result) {
        m_ladder.resolved(request.channel.id(),
                          {.rung = rung, .command = tool.command, .version = tool.version});
    }
    co_return result;
}

QCoro::Task<ProcessOutcome> StreamResolver::call(Request& request, ProcessRequest process,
                                                 StreamQuery query, Result& result) {
    const std::optional<QString> obstacle =
        YtDlpConfiguration::obstacle(m_tool.runner().host(), process.program);
    if (!obstacle) {
        ProcessOutcome outcome = co_await m_tool.runner().run(process, request.stop);
        result = readOutcome(query, outcome);
        co_return outcome;
    }
    std::stop_source child;
    std::stop_source over;
    const auto wasEnded = std::make_shared<bool>(false);
    const std::stop_callback forward(request.stop, [&child] { child.request_stop(); });
    m_background.spawn(endAtLimit(m_clock, over.get_token(), child, wasEnded));
    ProcessOutcome outcome = co_await m_tool.runner().run(process, child.get_token());
    over.request_stop();
    request.isHopeless = *wasEnded;
    result = withObstacle(readOutcome(query, outcome), outcome, *obstacle, *wasEnded);
    co_return outcome;
}

QCoro::Task<> StreamResolver::prepare(Channel channel, Resolution resolution,
                                      std::stop_token stop) {
    // What would have to be installed first is not for later.
    if (!m_site || !m_tool.known(YtDlpSearch::of(YtDlpUser::streamResolver)))
        co_return;
    Request request{.channel = channel,
                    .resolution = resolution,
                    .climb = Climb(m_ladder.order(channel.id())),
                    .stop = stop,
                    .usable = std::nullopt};
    const Rung rung = request.climb.rung();
    const std::optional<RungTool> tool = co_await toolFor(rung);
    if (!tool || stop.stop_requested())
        co_return;
    const StreamQuery query{.rung = rung,
                            .resolution = resolution,
                            .page = pageAddress(*m_site, channel, Source::livePage),
                            .runtimes = tool->runtimes};
    const ProcessRequest process{.program = tool->command.program,
                                 .arguments = tool->command.argumentsFor(query.arguments()),
                                 .environment = std::nullopt,
                                 .priority = ProcessRequest::Priority::idle};
    Result result = std::unexpected(StreamError::NoOutput{});
    co_await call(request, process, query, result);
    const QString key = cacheKey(channel, resolution);
    qCInfo(logStream).noquote() << "ahead:" << key << (result ? "is prepared" : "failed");
    if (!result || stop.stop_requested())
        co_return;
    m_ladder.resolved(channel.id(),
                      {.rung = rung, .command = tool->command, .version = tool->version});
    m_cache.insert(key, {*result, m_clock.now()});
}

std::optional<Clock::TimePoint> StreamResolver::freshUntil(const Channel& channel,
                                                           Resolution resolution) const {
    const auto cached = m_cache.constFind(cacheKey(channel, resolution));
    if (cached == m_cache.constEnd() || !isFresh(*cached))
        return std::nullopt;
    return cached->resolvedAt + AppConstants::streamCacheTTL;
}

QCoro::Task<std::optional<StreamResolver::RungTool>> StreamResolver::toolFor(Rung rung) {
    if (rung != Rung::usual) {
        std::optional<RungTool> newest = co_await newestTool(rung);
        co_return newest;
    }
    const YtDlpPlan plan = YtDlpPlan::ofStreamResolver();
    const std::optional<YtDlpCommand> command = co_await m_tool.findOrInstall(plan);
    if (!command)
        co_return std::nullopt;
    co_return RungTool{.command = *command, .version = {}, .runtimes = {}};
}

QCoro::Task<std::optional<StreamResolver::RungTool>> StreamResolver::newestTool(Rung rung) {
    const std::optional<LadderMemory::Entry> memory = m_ladder.remembered();
    RungTool tool;
    if (memory && memory->rung == rung &&
        HostFileSystem::isExecutableFile(memory->command.program)) {
        tool = {.command = memory->command, .version = memory->version, .runtimes = {}};
    } else {
        const std::optional<YtDlpTool::Candidate> newest = co_await m_tool.newest();
        if (!newest)
            co_return std::nullopt;
        tool = {.command = newest->command, .version = newest->version, .runtimes = {}};
    }
    if (rung == Rung::newestTool &&
        m_tool.known(YtDlpSearch::of(YtDlpUser::streamResolver)) == tool.command)
        co_return std::nullopt;
    if (rung == Rung::javaScript) {
        tool.runtimes = co_await usableRuntimes(tool.command, tool.version);
        if (tool.runtimes.isEmpty())
            co_return std::nullopt;
    }
    co_return std::optional(tool);
}

QCoro::Task<QStringList> StreamResolver::usableRuntimes(YtDlpCommand command, QString version) {
    ToolRunner& runner = m_tool.runner();
    const QStringList runtimes = installedRuntimes(runner.host());
    if (runtimes.isEmpty())
        co_return QStringList();
    const QString key = command.program + u' ' + version;
    if (!m_knowsRuntimes.contains(key)) {
        const QStringList arguments = command.argumentsFor({u"--help"_s});
        const std::optional<QString> help =
            co_await runner.output(command.program, arguments, ToolEnvironment::inherited);
        m_knowsRuntimes[key] = help && help->contains(runtimeOption());
    }
    co_return m_knowsRuntimes[key] ? runtimes : QStringList();
}

QCoro::Task<> StreamResolver::checkMemory() {
    const std::optional<YtDlpTool::Candidate> newest = co_await m_tool.newest();
    const std::optional<LadderMemory::Entry> memory = m_ladder.remembered();
    if (memory && (!newest || newest->version != memory->version)) {
        qCInfo(logStream) << "yt-dlp is another one now, starting from the usual call again";
        m_ladder.forget();
    }
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

void StreamResolver::played(const Channel& channel) {
    // Later than the first picture, as asking for versions takes a while.
    if (m_ladder.remembered() && !std::exchange(m_hasCheckedMemory, true))
        m_background.spawn(checkMemory());
    m_ladder.played(channel.id());
}

void StreamResolver::refused(const Channel& channel) {
    m_ladder.refused(channel.id());
    invalidateCache(channel);
}

void StreamResolver::invalidateAllCache() {
    m_cache.clear();
}

void StreamResolver::updateYtDlpIfNeeded() {
    if (m_didUpdateCheck)
        return;
    m_didUpdateCheck = true;
    const QStringList arguments{u"-m"_s,      u"pip"_s,       u"install"_s, u"--user"_s,
                                u"--quiet"_s, u"--upgrade"_s, u"yt-dlp"_s};
    m_background.spawn(upgrade(m_tool, arguments));
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
