// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/YtDlpLocator.h"

#include "streaming/Which.h"

#include <QCoroFuture>
#include <QPromise>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

const QString pythonPath = u"/usr/bin/python3"_s;
const QString brewPath = u"/opt/homebrew/bin/brew"_s;

} // namespace

QStringList YtDlpCommand::argumentsFor(const QStringList& arguments) const {
    return kind == Kind::pythonModule ? QStringList{u"-m"_s, u"yt_dlp"_s} + arguments : arguments;
}

YtDlpLocator::YtDlpLocator(HostFileSystem host, ProcessRunner& processes)
    : m_host(std::move(host)), m_processes(processes) {}

QString YtDlpLocator::python() const {
    return m_host.systemPath(pythonPath);
}

QCoro::Task<YtDlpLocator::Found> YtDlpLocator::findYtDlp() {
    // A whole result each time: QCoro 0.8 moves out of what it has to convert, a member too.
    if (m_known)
        co_return Found(*m_known);
    std::optional<YtDlpCommand> found = co_await search();
    if (!found) {
        const bool installed = co_await installOnce();
        if (installed)
            found = co_await searchAfterInstall();
    }
    if (!found) {
        co_return std::unexpected(
            StreamError::ResolveFailed{u"yt-dlp not found and auto-install failed"_s});
    }
    m_known = found;
    co_return Found(*found);
}

QCoro::Task<std::optional<YtDlpCommand>> YtDlpLocator::search() {
    std::optional<YtDlpCommand> found = probeFixedPlaces();
    if (!found)
        found = co_await findViaWhich();
    if (!found)
        found = co_await checkPythonModule();
    co_return found;
}

QCoro::Task<std::optional<YtDlpCommand>> YtDlpLocator::searchAfterInstall() {
    std::optional<YtDlpCommand> found = probeFixedPlaces();
    if (!found)
        found = co_await checkPythonModule();
    co_return found;
}

std::optional<YtDlpCommand> YtDlpLocator::probeFixedPlaces() const {
    QStringList places{m_host.systemPath(u"/opt/homebrew/bin/yt-dlp"_s),
                       m_host.systemPath(u"/usr/local/bin/yt-dlp"_s),
                       m_host.systemPath(u"/usr/bin/yt-dlp"_s)};
    for (int minor = 9; minor <= 13; ++minor)
        places.append(m_host.home() + u"/Library/Python/3.%1/bin/yt-dlp"_s.arg(minor));
    for (const QString& place : places) {
        if (HostFileSystem::isExecutableFile(place))
            return YtDlpCommand{YtDlpCommand::Kind::executable, place};
    }
    return std::nullopt;
}

QCoro::Task<std::optional<YtDlpCommand>> YtDlpLocator::findViaWhich() {
    const QString path = co_await whichYtDlp(m_host, m_processes, std::nullopt);
    if (!HostFileSystem::isExecutableFile(path))
        co_return std::nullopt;
    co_return YtDlpCommand{YtDlpCommand::Kind::executable, path};
}

QCoro::Task<std::optional<YtDlpCommand>> YtDlpLocator::checkPythonModule() {
    const QStringList arguments{u"-m"_s, u"yt_dlp"_s, u"--version"_s};
    const bool works = co_await succeeds(python(), arguments);
    if (!works)
        co_return std::nullopt;
    co_return YtDlpCommand{YtDlpCommand::Kind::pythonModule, python()};
}

QCoro::Task<bool> YtDlpLocator::installYtDlp() {
    const QStringList pip{u"-m"_s, u"pip"_s, u"install"_s, u"--user"_s, u"--quiet"_s, u"yt-dlp"_s};
    const bool installedByPip = co_await succeeds(python(), pip);
    if (installedByPip)
        co_return true;
    const QStringList brew{u"install"_s, u"yt-dlp"_s};
    const bool installedByBrew = co_await succeeds(m_host.systemPath(brewPath), brew);
    co_return installedByBrew;
}

QCoro::Task<bool> YtDlpLocator::installOnce() {
    if (m_installation) {
        const QFuture<bool> running = *m_installation;
        const bool installed = co_await running;
        co_return installed;
    }
    QPromise<bool> promise;
    promise.start();
    m_installation = promise.future();
    const bool installed = co_await installYtDlp();
    m_installation.reset();
    promise.addResult(installed);
    promise.finish();
    co_return installed;
}

QCoro::Task<bool> YtDlpLocator::succeeds(QString program, QStringList arguments) {
    const ProcessRequest request{.program = std::move(program),
                                 .arguments = std::move(arguments),
                                 .environment = std::nullopt,
                                 .standardOutput = ProcessRequest::Stream::discard,
                                 .standardError = ProcessRequest::Stream::discard};
    const ProcessOutcome outcome = co_await m_processes.run(request, std::stop_token());
    co_return outcome && outcome->succeeded();
}

} // namespace orvane
