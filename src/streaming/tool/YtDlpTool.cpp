// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpTool.h"

#include "base/Logging.h"

#include <QCoroFuture>
#include <QPromise>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

QString describe(const YtDlpInstaller::Installed& installed) {
    return installed ? u"installed "_s + installed->program : errorDescription(installed.error());
}

} // namespace

YtDlpTool::YtDlpTool(HostFileSystem host, ProcessRunner& processes, Clock& clock, HttpClient& http,
                     YtDlpSources sources, QString privateCopy)
    : m_runner(std::move(host), processes),
      m_release(m_runner, http, sources, m_stop.get_token()),
      m_installer(m_runner, m_release, clock, sources.gitHubRaw, m_stop.get_token()),
      m_newest(m_runner, std::move(privateCopy), m_stop.get_token()) {}

std::optional<YtDlpCommand> YtDlpTool::known(const YtDlpSearch& search) const {
    const auto command = m_known.constFind(search.user);
    if (command == m_known.constEnd() || search.keeps == YtDlpSearch::Keeps::nothing)
        return std::nullopt;
    if (search.keeps == YtDlpSearch::Keeps::whileItExists &&
        !HostFileSystem::exists(command->program))
        return std::nullopt;
    return *command;
}

QCoro::Task<std::optional<YtDlpCommand>> YtDlpTool::find(YtDlpSearch search) {
    std::optional<YtDlpCommand> command = known(search);
    if (command)
        co_return command;
    search.broken = m_broken;
    command = co_await searchForYtDlp(m_runner, search);
    if (command) {
        qCInfo(logYtDlp).noquote()
            << "using" << command->program << command->argumentsFor({}).join(u' ');
        m_known.insert(search.user, *command);
    } else {
        qCInfo(logYtDlp) << "yt-dlp was not found";
    }
    co_return command;
}

QCoro::Task<YtDlpTool::Installed> YtDlpTool::install(YtDlpPlan plan) {
    while (m_installation) {
        const Installation other = *m_installation;
        qCInfo(logYtDlp) << "waiting for the installation that is running";
        const Installed installed = co_await other.result;
        if (!installed && other.user == plan.user)
            co_return Installed(installed);
    }
    std::optional<YtDlpCommand> command = m_installed;
    // To install it once more would not help.
    if (command && m_broken.contains(BrokenTool::at(command->program)))
        co_return std::unexpected(YtDlpError::notInstalled);
    if (!command || !HostFileSystem::isExecutableFile(command->program)) {
        const Installed installed = co_await runInstallation(plan);
        if (!installed)
            co_return Installed(installed);
        command = *installed;
    }
    m_known.insert(plan.user, *command);
    co_return Installed(*command);
}

void YtDlpTool::becameNewer() {
    m_newest.forget();
    if (m_onNewer)
        m_onNewer();
}

QCoro::Task<YtDlpTool::Installed> YtDlpTool::runInstallation(YtDlpPlan plan) {
    QPromise<Installed> promise;
    promise.start();
    m_installation = Installation{plan.user, promise.future()};
    qCInfo(logYtDlp) << "installing yt-dlp";
    plan.confirmation.broken = m_broken;
    Installed installed = co_await m_installer.install(plan);
    qCInfo(logYtDlp).noquote() << "the installation ended:" << describe(installed);
    if (installed)
        m_installed = *installed;
    m_installation.reset();
    promise.addResult(installed);
    promise.finish();
    if (installed)
        becameNewer();
    co_return installed;
}

QCoro::Task<std::optional<QString>> YtDlpTool::version(YtDlpCommand command) {
    std::optional<QString> printed = co_await askVersion(m_runner, command, m_stop.get_token());
    co_return printed;
}

QCoro::Task<std::optional<YtDlpCommand>> YtDlpTool::replaceIfBroken(YtDlpCommand command,
                                                                    YtDlpPlan plan) {
    const std::pair attempt(plan.user, command);
    if (m_replaced.contains(attempt))
        co_return std::nullopt;
    m_replaced.append(attempt);
    const std::optional<QString> printed = co_await version(command);
    if (printed || m_stop.stop_requested()) {
        // It may break later.
        m_replaced.removeOne(attempt);
        co_return std::nullopt;
    }
    qCWarning(logYtDlp).noquote() << command.program << "does not run";
    // Python itself is not broken: the search asks it for its module anyway.
    const BrokenTool broken = BrokenTool::at(command.program);
    if (command.kind == YtDlpCommand::Kind::executable)
        m_broken.append(broken);
    m_known.removeIf([&](const auto& entry) { return entry.value() == command; });
    const std::optional<YtDlpCommand> other = co_await findOrInstall(plan);
    // Without another one nothing is lost by using it, and the user may repair it.
    if (!other)
        m_broken.removeOne(broken);
    co_return other;
}

QCoro::Task<std::optional<YtDlpCommand>> YtDlpTool::findOrInstall(YtDlpPlan plan) {
    const YtDlpSearch search = YtDlpSearch::of(plan.user);
    std::optional<YtDlpCommand> command = co_await find(search);
    if (command)
        co_return command;
    const Installed installed = co_await install(plan);
    if (installed)
        command = *installed;
    co_return command;
}

} // namespace orvane
