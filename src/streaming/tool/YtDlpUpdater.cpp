// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpUpdater.h"

#include "language/Translation.h"

#include "base/Logging.h"
#include "base/TaskScope.h"

#include <QCoroFuture>
#include <QPromise>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace YtDlpUpdateOutcome;

namespace {

/// Up to this age of every yt-dlp here, the site is likely to be understood still.
constexpr int daysWithoutPrivateCopy = 60;

bool isLongOutdated(const QString& version, const QString& latest) {
    const std::optional<QDate> day = releaseDay(version);
    const std::optional<QDate> latestDay = releaseDay(latest);
    return day && latestDay && day->daysTo(*latestDay) > daysWithoutPrivateCopy;
}

} // namespace

YtDlpUpdater::YtDlpUpdater(YtDlpTool& tool, Preferred preferred, TaskScope& background)
    : m_tool(tool), m_preferred(std::move(preferred)), m_background(background) {}

QCoro::Task<> YtDlpUpdater::upgrade(QString installed, QString latest) {
    co_await runUpgradeCommands();
    if (!isLongOutdated(installed, latest))
        co_return;
    const std::optional<Candidate> newest = co_await m_tool.newest();
    if (newest && isLongOutdated(newest->version, latest))
        co_await downloadPrivateCopy();
}

QCoro::Task<std::optional<YtDlpStatus>> YtDlpUpdater::status() {
    std::optional<YtDlpCommand> command = m_preferred();
    if (!command)
        command = co_await m_tool.find(YtDlpSearch::of(YtDlpUser::streamResolver));
    if (!command)
        co_return std::nullopt;
    const std::optional<QString> version = co_await m_tool.version(*command);
    if (!version)
        co_return std::nullopt;
    const std::optional<Candidate> newest = co_await m_tool.newest();
    co_return YtDlpStatus{
        .program = command->program,
        .version = *version,
        .released = releaseDay(*version),
        .newer = newest && isNewerVersion(newest->version, *version) ? newest->version : QString()};
}

QCoro::Task<Value> YtDlpUpdater::update(std::function<void(QString)> progress) {
    if (!m_update.isRunning()) {
        const auto promise = std::make_shared<QPromise<Outcome>>();
        promise->start();
        m_update = promise->future();
        m_background.spawn(runUpdate(std::move(progress), promise));
    }
    const QFuture<Outcome> running = m_update;
    Outcome outcome = co_await running;
    co_return outcome;
}

QCoro::Task<> YtDlpUpdater::runUpdate(Progress progress,
                                      std::shared_ptr<QPromise<Outcome>> promise) {
    Outcome outcome = co_await updateNow(std::move(progress));
    promise->addResult(std::move(outcome));
    promise->finish();
}

QCoro::Task<Value> YtDlpUpdater::updateNow(Progress progress) {
    progress(translated("YtDlp", "Looking for yt-dlp's newest release..."));
    const std::optional<Candidate> newest = co_await m_tool.newest();
    if (!newest) {
        progress(translated("YtDlp", "Installing yt-dlp..."));
        Outcome outcome = co_await installFirst();
        co_return outcome;
    }
    const std::optional<QString> latest = co_await m_tool.release().latestVersion();
    if (!latest)
        co_return Failed{
            translated("YtDlp", "The newest release could not be looked up. Is there a network?")};
    qCInfo(logYtDlp).noquote() << "the user asks for an update from" << newest->version << "to"
                               << *latest;
    if (!isNewerVersion(*latest, newest->version))
        co_return UpToDate{newest->version};
    Outcome outcome = co_await updateFrom(newest->version, *latest, std::move(progress));
    co_return outcome;
}

QCoro::Task<Value> YtDlpUpdater::installFirst() {
    const YtDlpPlan plan = YtDlpPlan::ofManager();
    const YtDlpTool::Installed installed = co_await m_tool.install(plan);
    if (!installed)
        co_return Failed{translated("YtDlp", errorDescription(installed.error()))};
    const std::optional<QString> version = co_await m_tool.version(*installed);
    if (!version)
        co_return Failed{translated("YtDlp", "The installed yt-dlp does not run.")};
    co_return Updated{.from = {}, .to = *version};
}

QCoro::Task<Value> YtDlpUpdater::updateFrom(QString version, QString latest, Progress progress) {
    progress(translated("YtDlp", "Upgrading yt-dlp from %1 to %2...")
                 .arg(leftToRight(version), leftToRight(latest)));
    co_await runUpgradeCommands();
    const std::optional<Candidate> upgraded = co_await m_tool.newest();
    if (upgraded && !isNewerVersion(latest, upgraded->version))
        co_return Updated{.from = version, .to = upgraded->version};
    progress(translated("YtDlp", "Downloading yt-dlp %1...").arg(leftToRight(latest)));
    const YtDlpRelease::Downloaded copy = co_await downloadPrivateCopy();
    if (copy && isNewerVersion(copy->version, version))
        co_return Updated{.from = version, .to = copy->version};
    if (upgraded && isNewerVersion(upgraded->version, version))
        co_return Updated{.from = version, .to = upgraded->version};
    if (!copy)
        co_return Failed{translated("YtDlp", errorDescription(copy.error()))};
    co_return UpToDate{version};
}

QCoro::Task<> YtDlpUpdater::runUpgradeCommands() {
    ToolRunner& runner = m_tool.runner();
    const std::optional<QProcessEnvironment> environment = variables(ToolEnvironment::extendedPath);
    for (const YtDlpPlan::RunCommand& upgrade : upgradeCommands()) {
        const std::optional<QString> program = runner.firstExisting(upgrade.programs);
        if (!program)
            continue;
        const bool succeeded = co_await runner.install(*program, upgrade.arguments, environment);
        if (succeeded) {
            m_tool.becameNewer();
            co_return;
        }
    }
}

QCoro::Task<YtDlpRelease::Downloaded> YtDlpUpdater::downloadPrivateCopy() {
    if (m_tool.privateCopy().isEmpty())
        co_return std::unexpected(YtDlpDownloadError::incomplete);
    const QString destination = m_tool.privateCopy();
    YtDlpRelease::Downloaded copy = co_await m_tool.release().download(destination);
    if (copy) {
        qCInfo(logYtDlp).noquote()
            << "a private copy of" << copy->version << "is at" << m_tool.privateCopy();
        m_tool.becameNewer();
    }
    co_return copy;
}

} // namespace orvane
