// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpRelease.h"

#include "base/Logging.h"
#include "platform/system/HttpClient.h"
#include "streaming/tool/ToolRunner.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>
#include <QTemporaryFile>

#include <cstdio>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds versionTimeout{10000};

const QString releaseFiles = u"/yt-dlp/yt-dlp/releases/latest/download/"_s;

QString executableForThisSystem() {
#ifdef Q_OS_MACOS
    return u"yt-dlp_macos"_s;
#else
    return QSysInfo::buildCpuArchitecture() == u"arm64" ? u"yt-dlp_linux_aarch64"_s
                                                        : u"yt-dlp_linux"_s;
#endif
}

} // namespace

const QString YtDlpRelease::executableName = executableForThisSystem();

YtDlpRelease::YtDlpRelease(ToolRunner& tools, HttpClient& http, YtDlpSources sources,
                           std::stop_token stop)
    : m_tools(tools), m_http(http), m_sources(std::move(sources)), m_stop(std::move(stop)) {}

QCoro::Task<std::optional<QString>> YtDlpRelease::latestVersion() {
    if (!m_sources.gitHubApi)
        co_return std::nullopt;
    const QString address = m_sources.gitHubApi->address(u"/repos/yt-dlp/yt-dlp/releases/latest");
    const std::optional<QByteArray> body = co_await m_http.get(address, versionTimeout, m_stop);
    if (!body)
        co_return std::nullopt;
    const QJsonValue tag = QJsonDocument::fromJson(*body).object().value(u"tag_name");
    if (!tag.isString())
        co_return std::nullopt;
    co_return std::optional(tag.toString());
}

QCoro::Task<std::optional<QString>> YtDlpRelease::download() {
    if (!m_sources.gitHub)
        co_return std::nullopt;
    const QString folder = m_tools.host().home() + u"/.local/bin"_s;
    QDir().mkpath(folder);
    // Under its final name, an incomplete file would be taken for yt-dlp from then on.
    QTemporaryFile incomplete(folder + u"/.yt-dlp-XXXXXX"_s);
    if (!incomplete.open())
        co_return std::nullopt;
    const QString address = m_sources.gitHub->address(QString(releaseFiles + executableName));
    qCInfo(logYtDlp).noquote() << "downloading" << withoutSecrets(address);
    const std::optional<QByteArray> sha256 =
        co_await m_http.download(address, incomplete.fileName(), m_stop);
    if (!sha256) {
        qCWarning(logYtDlp) << "the download failed";
        co_return std::nullopt;
    }
    const bool matches = co_await checksumMatches(*m_sources.gitHub, *sha256);
    if (!matches) {
        qCWarning(logYtDlp) << "the download does not match the published checksum";
        co_return std::nullopt;
    }
    // Before the file gets its final name, because it may be found and run from then on.
    const QString chmod = m_tools.host().systemPath(u"/bin/chmod"_s);
    const QStringList arguments{u"+x"_s, incomplete.fileName()};
    co_await m_tools.output(chmod, arguments, ToolEnvironment::extendedPath);
    const QString destination = folder + u"/yt-dlp"_s;
    incomplete.close();
    if (std::rename(QFile::encodeName(incomplete.fileName()).constData(),
                    QFile::encodeName(destination).constData()) != 0)
        co_return std::nullopt;
    incomplete.setAutoRemove(false);
    co_return std::optional(destination);
}

QCoro::Task<bool> YtDlpRelease::checksumMatches(Origin releases, QByteArray sha256) {
    const QString address = releases.address(QString(releaseFiles + u"SHA2-256SUMS"_s));
    const std::optional<QByteArray> sums =
        co_await m_http.get(address, HttpClient::defaultTimeout, m_stop);
    if (!sums)
        co_return true;
    for (const QByteArray& line : sums->split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() == 2 && QString::fromUtf8(columns.at(1)) == executableName)
            co_return columns.at(0).toLower() == sha256;
    }
    co_return true;
}

} // namespace orvane
