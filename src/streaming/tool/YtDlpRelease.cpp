// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpRelease.h"

#include "base/Logging.h"
#include "platform/system/HttpClient.h"
#include "streaming/tool/ToolRunner.h"
#include "streaming/tool/YtDlpSearch.h"

#include <QCoroFuture>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QVersionNumber>

#include <algorithm>
#include <cstdio>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds versionTimeout{10000};

const QString fileForPython = u"yt-dlp"_s;

/// What the folders of unpacked releases begin with, and what follows of the checksum.
const QString unpackedPrefix = u"unpacked-"_s;
constexpr qsizetype checksumDigits = 16;

const QString latestRelease = u"/yt-dlp/yt-dlp/releases/latest/download/"_s;

/// The first version of Python that runs the file for all machines.
const QVersionNumber neededPython(3, 10);

/// Removes all unpacked releases but this one and the one before, which may be running. Each has
/// some two thousand files.
bool removeOthers(const QDir& folder, const QString& current) {
    QStringList others =
        folder.entryList({unpackedPrefix + u'*'}, QDir::Dirs | QDir::NoSymLinks, QDir::Time);
    others.removeOne(current);
    return std::ranges::all_of(others.mid(1), [&](const QString& old) {
        return QDir(folder.filePath(old)).removeRecursively();
    });
}

} // namespace

QString errorDescription(YtDlpDownloadError error) {
    switch (error) {
    case YtDlpDownloadError::noChecksums:
        return QString::fromUtf8(QT_TRANSLATE_NOOP(
            "YtDlp", "The checksums of yt-dlp's newest release could not be downloaded."));
    case YtDlpDownloadError::noFile:
        return QString::fromUtf8(QT_TRANSLATE_NOOP(
            "YtDlp", "yt-dlp's newest release has a file for this computer's processor only where "
                     "Python "
                     "3.10 or later is installed."));
    case YtDlpDownloadError::incomplete:
        return QString::fromUtf8(
            QT_TRANSLATE_NOOP("YtDlp", "yt-dlp's newest release could not be downloaded."));
    case YtDlpDownloadError::wrongChecksum:
        return QString::fromUtf8(QT_TRANSLATE_NOOP(
            "YtDlp",
            "The downloaded yt-dlp does not match its published checksum and was deleted."));
    case YtDlpDownloadError::doesNotRun:
        break;
    }
    return QString::fromUtf8(
        QT_TRANSLATE_NOOP("YtDlp", "yt-dlp's newest release does not run on this computer."));
}

QStringList releaseFiles(const QString& architecture, const QString& python) {
    QStringList files;
    const QString number = python.trimmed().section(u' ', 1, 1);
    if (QVersionNumber::fromString(number) >= neededPython)
        files += fileForPython;
#ifdef Q_OS_MACOS
    files += u"yt-dlp_macos"_s;
#else
    if (architecture == u"x86_64")
        files += u"yt-dlp_linux"_s;
    else if (architecture == u"arm64")
        files += u"yt-dlp_linux_aarch64"_s;
    else if (architecture == u"arm")
        files += u"yt-dlp_linux_armv7l"_s;
#endif
    return files;
}

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

QCoro::Task<YtDlpRelease::Downloaded> YtDlpRelease::download(QString destination) {
    if (!m_sources.gitHub)
        co_return std::unexpected(YtDlpDownloadError::incomplete);
    const std::optional<Checksums> published = co_await checksums(*m_sources.gitHub);
    if (!published) {
        qCWarning(logYtDlp) << "no download without the published checksums";
        co_return std::unexpected(YtDlpDownloadError::noChecksums);
    }
    const QString python = co_await pythonVersion();
    Downloaded downloaded = std::unexpected(YtDlpDownloadError::noFile);
    for (const QString& name : releaseFiles(m_sources.architecture, python)) {
        const QByteArray checksum = published->value(name);
        if (checksum.isEmpty())
            continue;
        const QString address = m_sources.gitHub->address(QString(latestRelease + name));
        downloaded = co_await downloadFile(address, checksum, destination);
        if (downloaded)
            break;
    }
    if (!downloaded) {
        qCWarning(logYtDlp).noquote()
            << errorDescription(downloaded.error()) << m_sources.architecture << python;
    }
    co_return downloaded;
}

QCoro::Task<YtDlpRelease::Downloaded>
YtDlpRelease::downloadFile(QString address, QByteArray checksum, QString destination) {
    const QString folder = QFileInfo(destination).path();
    QDir().mkpath(folder);
    // Under its final name, an incomplete file would be taken for yt-dlp from then on.
    const QTemporaryDir incomplete(folder + u"/.yt-dlp-XXXXXX"_s);
    const YtDlpCommand command{YtDlpCommand::Kind::executable, incomplete.filePath(u"yt-dlp"_s)};
    qCInfo(logYtDlp).noquote() << "downloading" << withoutSecrets(address);
    const std::optional<QByteArray> sha256 =
        co_await m_http.download(address, command.program, m_stop);
    if (!incomplete.isValid() || !sha256)
        co_return std::unexpected(YtDlpDownloadError::incomplete);
    if (*sha256 != checksum)
        co_return std::unexpected(YtDlpDownloadError::wrongChecksum);
    const QString chmod = m_tools.host().systemPath(u"/bin/chmod"_s);
    const QStringList arguments{u"+x"_s, command.program};
    co_await m_tools.output(chmod, arguments, ToolEnvironment::extendedPath);
    // A file for another machine must not replace one that works.
    const std::optional<QString> version = co_await askVersion(m_tools, command, m_stop);
    if (!version)
        co_return std::unexpected(YtDlpDownloadError::doesNotRun);
    if (address.endsWith(u'/' + fileForPython))
        co_await unpack(command, incomplete.path(), QString::fromLatin1(checksum), *version);
    if (std::rename(QFile::encodeName(command.program).constData(),
                    QFile::encodeName(destination).constData()) != 0)
        co_return std::unexpected(YtDlpDownloadError::incomplete);
    co_return YtDlpCandidate{{YtDlpCommand::Kind::executable, destination}, *version};
}

QCoro::Task<> YtDlpRelease::unpack(YtDlpCommand packed, QString workFolder, QString checksum,
                                   QString version) {
    QDir folder(QFileInfo(workFolder).path());
    const QString name = unpackedPrefix + checksum.left(checksumDigits);
    // It may have been unpacked before.
    if (!folder.exists(name)) {
        const QString fresh = workFolder + u"/unpacked"_s;
        const bool isExtracted = co_await extract(packed.program, fresh);
        if (!isExtracted)
            co_return;
        folder.rename(fresh, name);
    }
    const QString start = folder.filePath(name + u"/__main__.py"_s);
    QFile::setPermissions(start, QFile::permissions(start) | QFile::ExeOwner);
    const YtDlpCommand unpacked{YtDlpCommand::Kind::executable, workFolder + u"/start"_s};
    if (!QFile::link(start, unpacked.program))
        co_return;
    const std::optional<QString> printed = co_await askVersion(m_tools, unpacked, m_stop);
    if (printed != version)
        co_return;
    const QFuture<bool> removal =
        m_disk.run([path = folder.path(), name] { return removeOthers(QDir(path), name); });
    co_await removal;
    std::rename(QFile::encodeName(unpacked.program).constData(),
                QFile::encodeName(packed.program).constData());
}

QCoro::Task<bool> YtDlpRelease::extract(QString archive, QString folder) {
    const QString python = systemPython(m_tools.host());
    if (!HostFileSystem::isExecutableFile(python))
        co_return false;
    const QStringList extraction{u"-I"_s, u"-m"_s, u"zipfile"_s, u"-e"_s, archive, folder};
    const bool isExtracted =
        co_await m_tools.succeeds(python, extraction, ToolEnvironment::extendedPath);
    // Python compiles by itself what this does not, at the first start.
    const QStringList compilation{u"-I"_s, u"-m"_s, u"compileall"_s, u"-q"_s, folder};
    if (isExtracted)
        co_await m_tools.succeeds(python, compilation, ToolEnvironment::extendedPath);
    co_return isExtracted;
}

QCoro::Task<std::optional<YtDlpRelease::Checksums>> YtDlpRelease::checksums(Origin releases) {
    const QString address = releases.address(QString(latestRelease + u"SHA2-256SUMS"_s));
    const std::optional<QByteArray> list =
        co_await m_http.get(address, HttpClient::defaultTimeout, m_stop);
    if (!list)
        co_return std::nullopt;
    Checksums checksums;
    for (const QByteArray& line : list->split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (columns.size() == 2)
            checksums.insert(QString::fromUtf8(columns.at(1)), columns.at(0).toLower());
    }
    if (checksums.isEmpty())
        co_return std::nullopt;
    co_return std::optional(checksums);
}

QCoro::Task<QString> YtDlpRelease::pythonVersion() {
    const QString python = systemPython(m_tools.host());
    if (!HostFileSystem::isExecutableFile(python))
        co_return QString();
    const QStringList arguments{u"--version"_s};
    const std::optional<QString> printed =
        co_await m_tools.output(python, arguments, ToolEnvironment::extendedPath);
    co_return printed.value_or(QString());
}

} // namespace orvane
