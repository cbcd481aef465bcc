// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/YtDlpManager.h"

#include "base/Clock.h"
#include "base/TaskScope.h"
#include "platform/system/HttpClient.h"
#include "streaming/Which.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>
#include <QTemporaryFile>

#include <cstdio>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int pythonPolls = 30;
constexpr std::chrono::milliseconds pythonPollTime{2000};
constexpr std::chrono::milliseconds versionTimeout{10000};

const QString releaseFiles = u"/yt-dlp/yt-dlp/releases/latest/download/"_s;

QString executableOfThisSystem() {
#ifdef Q_OS_MACOS
    return u"yt-dlp_macos"_s;
#else
    return QSysInfo::buildCpuArchitecture() == u"arm64" ? u"yt-dlp_linux_aarch64"_s
                                                        : u"yt-dlp_linux"_s;
#endif
}

/// A program that was started from a desktop inherits a short path; tools need more to find theirs.
QProcessEnvironment helperEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, u"/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/sbin:"_s +
                                      environment.value(u"PATH"_s));
    return environment;
}

} // namespace

const QString YtDlpManager::releasedExecutable = executableOfThisSystem();

QString errorDescription(YtDlpError error) {
    if (error == YtDlpError::noPython)
        return u"Python 3 is required. Please install Xcode Command Line Tools."_s;
    return u"Could not install yt-dlp. Please install manually: brew install yt-dlp"_s;
}

YtDlpManager::YtDlpManager(HostFileSystem host, ProcessRunner& processes, Clock& clock,
                           HttpClient& http, YtDlpSources sources, TaskScope& background)
    : m_host(std::move(host)),
      m_processes(processes),
      m_clock(clock),
      m_http(http),
      m_sources(std::move(sources)),
      m_background(background),
      m_searchPaths{m_host.systemPath(u"/opt/homebrew/bin/yt-dlp"_s),
                    m_host.systemPath(u"/usr/local/bin/yt-dlp"_s),
                    m_host.home() + u"/.local/bin/yt-dlp"_s} {
    for (int minor = 9; minor <= 14; ++minor)
        m_searchPaths.append(m_host.home() + u"/Library/Python/3.%1/bin/yt-dlp"_s.arg(minor));
}

QCoro::Task<YtDlpManager::Installed> YtDlpManager::ensureInstalled() {
    if (!m_resolvedPath || !HostFileSystem::exists(*m_resolvedPath)) {
        std::optional<QString> existing = co_await findExisting();
        m_resolvedPath = existing;
    }
    if (m_resolvedPath) {
        startUpdateCheck();
        co_return Installed(*m_resolvedPath);
    }
    if (m_onInstalling)
        m_onInstalling(true);
    const Installed installed = co_await fullSetup();
    if (installed)
        m_resolvedPath = *installed;
    if (m_onInstalling)
        m_onInstalling(false);
    co_return installed;
}

void YtDlpManager::startUpdateCheck() {
    if (m_hasCheckedUpdate)
        return;
    m_hasCheckedUpdate = true;
    m_background.spawn(autoUpdateIfNeeded());
}

// Finding

QCoro::Task<std::optional<QString>> YtDlpManager::findExisting() {
    for (const QString& path : m_searchPaths) {
        if (HostFileSystem::exists(path))
            co_return std::optional(path);
    }
    std::optional<QString> found = co_await findViaWhich();
    co_return found;
}

QCoro::Task<std::optional<QString>> YtDlpManager::findViaWhich() {
    const QProcessEnvironment environment = helperEnvironment();
    const QString path = co_await whichYtDlp(m_host, m_processes, environment);
    if (path.isEmpty() || !HostFileSystem::exists(path))
        co_return std::nullopt;
    co_return std::optional(path);
}

bool YtDlpManager::hasPython3() const {
    return firstExisting(
               {u"/usr/bin/python3"_s, u"/opt/homebrew/bin/python3"_s, u"/usr/local/bin/python3"_s})
        .has_value();
}

std::optional<QString> YtDlpManager::findPip() const {
    return firstExisting({u"/usr/bin/pip3"_s, u"/opt/homebrew/bin/pip3"_s, u"/usr/local/bin/pip3"_s,
                          u"/Library/Developer/CommandLineTools/usr/bin/pip3"_s});
}

std::optional<QString> YtDlpManager::findBrew() const {
    return firstExisting({u"/opt/homebrew/bin/brew"_s, u"/usr/local/bin/brew"_s});
}

std::optional<QString> YtDlpManager::firstExisting(const QStringList& paths) const {
    for (const QString& path : paths) {
        QString real = m_host.systemPath(path);
        if (HostFileSystem::exists(real))
            return real;
    }
    return std::nullopt;
}

// Installing

QCoro::Task<YtDlpManager::Installed> YtDlpManager::fullSetup() {
    const bool hasPython = co_await ensurePython();
    if (!hasPython)
        co_return std::unexpected(YtDlpError::noPython);
    std::optional<QString> path = co_await installWithPip();
    if (!path)
        path = co_await installWithBrew();
    if (!path)
        path = co_await downloadBinary();
    if (!path)
        co_return std::unexpected(YtDlpError::notInstalled);
    co_return Installed(*path);
}

QCoro::Task<bool> YtDlpManager::ensurePython() {
    if (hasPython3())
        co_return true;
    const QStringList install{u"--install"_s};
    co_await shell(m_host.systemPath(u"/usr/bin/xcode-select"_s), install);
    const QStringList version{u"--version"_s};
    co_await shell(m_host.systemPath(u"/usr/bin/python3"_s), version);
    for (int poll = 0; poll < pythonPolls && !m_stop.stop_requested(); ++poll) {
        co_await m_clock.sleep(pythonPollTime, m_stop.get_token());
        if (hasPython3())
            co_return true;
    }
    co_return false;
}

QCoro::Task<std::optional<QString>> YtDlpManager::installWithPip() {
    const std::optional<QString> pip = findPip();
    if (!pip)
        co_return std::nullopt;
    const QStringList breaking{u"install"_s, u"--user"_s, u"--break-system-packages"_s,
                               u"yt-dlp"_s};
    std::optional<QString> path = co_await existingAfter(*pip, breaking);
    if (!path) {
        // An older pip does not know the option.
        const QStringList plain{u"install"_s, u"--user"_s, u"yt-dlp"_s};
        path = co_await existingAfter(*pip, plain);
    }
    co_return path;
}

QCoro::Task<std::optional<QString>> YtDlpManager::installWithBrew() {
    if (!findBrew())
        co_await installHomebrew();
    const std::optional<QString> brew = findBrew();
    if (!brew)
        co_return std::nullopt;
    const QStringList arguments{u"install"_s, u"yt-dlp"_s};
    std::optional<QString> path = co_await existingAfter(*brew, arguments);
    co_return path;
}

QCoro::Task<std::optional<QString>> YtDlpManager::existingAfter(QString program,
                                                                QStringList arguments) {
    const bool succeeded = co_await shellSuccess(program, arguments);
    if (!succeeded)
        co_return std::nullopt;
    std::optional<QString> path = co_await findExisting();
    co_return path;
}

QCoro::Task<> YtDlpManager::installHomebrew() {
    if (!m_sources.gitHubRaw)
        co_return;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"NONINTERACTIVE"_s, u"1"_s);
    environment.insert(u"CI"_s, u"1"_s);
    const QString script = m_sources.gitHubRaw->address(u"/Homebrew/install/HEAD/install.sh");
    const ProcessRequest request{
        .program = m_host.systemPath(u"/bin/bash"_s),
        .arguments = {u"-c"_s,
                      u"NONINTERACTIVE=1 /bin/bash -c \"$(curl -fsSL "_s + script + u")\""_s},
        .environment = environment,
        .standardOutput = ProcessRequest::Stream::discard,
        .standardError = ProcessRequest::Stream::discard};
    co_await m_processes.run(request, std::stop_token());
}

QCoro::Task<std::optional<QString>> YtDlpManager::downloadBinary() {
    if (!m_sources.gitHub)
        co_return std::nullopt;
    const QString folder = m_host.home() + u"/.local/bin"_s;
    QDir().mkpath(folder);
    // Under its real name a part of the tool would be found first for ever.
    QTemporaryFile unfinished(folder + u"/.yt-dlp-XXXXXX"_s);
    if (!unfinished.open())
        co_return std::nullopt;
    const QString address = m_sources.gitHub->address(QString(releaseFiles + releasedExecutable));
    const std::optional<QByteArray> sha256 =
        co_await m_http.download(address, unfinished.fileName(), m_stop.get_token());
    if (!sha256)
        co_return std::nullopt;
    const bool agrees = co_await checksumAgrees(*m_sources.gitHub, *sha256);
    if (!agrees)
        co_return std::nullopt;
    // Executable before it has its name: a tool that was found must run.
    const QStringList arguments{u"+x"_s, unfinished.fileName()};
    co_await shell(m_host.systemPath(u"/bin/chmod"_s), arguments);
    const QString destination = folder + u"/yt-dlp"_s;
    unfinished.close();
    if (std::rename(QFile::encodeName(unfinished.fileName()).constData(),
                    QFile::encodeName(destination).constData()) != 0)
        co_return std::nullopt;
    unfinished.setAutoRemove(false);
    co_return std::optional(destination);
}

QCoro::Task<bool> YtDlpManager::checksumAgrees(Origin releases, QByteArray sha256) {
    const QString address = releases.address(QString(releaseFiles + u"SHA2-256SUMS"_s));
    const std::optional<QByteArray> sums =
        co_await m_http.get(address, HttpClient::defaultTimeout, m_stop.get_token());
    if (!sums)
        co_return true;
    for (const QByteArray& line : sums->split('\n')) {
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.size() == 2 && QString::fromUtf8(words.at(1)) == releasedExecutable)
            co_return words.at(0).toLower() == sha256;
    }
    co_return true;
}

// Keeping it current

QCoro::Task<std::optional<QString>> YtDlpManager::fetchLatestVersion() {
    if (!m_sources.gitHubApi)
        co_return std::nullopt;
    const QString address = m_sources.gitHubApi->address(u"/repos/yt-dlp/yt-dlp/releases/latest");
    const std::optional<QByteArray> body =
        co_await m_http.get(address, versionTimeout, m_stop.get_token());
    if (!body)
        co_return std::nullopt;
    const QJsonValue tag = QJsonDocument::fromJson(*body).object().value(u"tag_name");
    if (!tag.isString())
        co_return std::nullopt;
    co_return std::optional(tag.toString());
}

QCoro::Task<std::optional<QString>> YtDlpManager::getVersion(QString path) {
    const QStringList arguments{u"--version"_s};
    const std::optional<QString> printed = co_await shell(path, arguments);
    const QString version = printed.value_or(QString()).trimmed();
    if (version.isEmpty())
        co_return std::nullopt;
    co_return std::optional(version);
}

QCoro::Task<> YtDlpManager::autoUpdateIfNeeded() {
    if (!m_resolvedPath)
        co_return;
    const QString path = *m_resolvedPath;
    const std::optional<QString> installed = co_await getVersion(path);
    if (!installed)
        co_return;
    const std::optional<QString> latest = co_await fetchLatestVersion();
    // Versions are dates, whose order is that of their texts.
    if (!latest || *installed >= *latest)
        co_return;
    const QString line = u"[Orvane] yt-dlp update: "_s + *installed + u" → "_s + *latest;
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
    if (const std::optional<QString> pip = findPip()) {
        const bool upgraded = co_await upgradeWithPip(*pip);
        if (upgraded)
            co_return;
    }
    if (const std::optional<QString> brew = findBrew()) {
        const QStringList arguments{u"upgrade"_s, u"yt-dlp"_s};
        co_await shellSuccess(*brew, arguments);
    }
}

QCoro::Task<bool> YtDlpManager::upgradeWithPip(QString pip) {
    const QStringList breaking{u"install"_s, u"--user"_s, u"--upgrade"_s,
                               u"--break-system-packages"_s, u"yt-dlp"_s};
    bool upgraded = co_await shellSuccess(pip, breaking);
    if (!upgraded) {
        const QStringList plain{u"install"_s, u"--user"_s, u"--upgrade"_s, u"yt-dlp"_s};
        upgraded = co_await shellSuccess(pip, plain);
    }
    co_return upgraded;
}

// Helpers

QCoro::Task<std::optional<QString>> YtDlpManager::shell(QString program, QStringList arguments) {
    const ProcessRequest request{.program = program,
                                 .arguments = arguments,
                                 .environment = helperEnvironment(),
                                 .standardError = ProcessRequest::Stream::discard};
    const ProcessOutcome outcome = co_await m_processes.run(request, std::stop_token());
    if (!outcome)
        co_return std::nullopt;
    std::optional<QString> text = outcome->standardOutput.text();
    co_return text;
}

QCoro::Task<bool> YtDlpManager::shellSuccess(QString program, QStringList arguments) {
    const ProcessRequest request{.program = program,
                                 .arguments = arguments,
                                 .environment = helperEnvironment(),
                                 .standardOutput = ProcessRequest::Stream::discard,
                                 .standardError = ProcessRequest::Stream::discard};
    const ProcessOutcome outcome = co_await m_processes.run(request, std::stop_token());
    co_return outcome && outcome->succeeded();
}

} // namespace orvane
