// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/BackgroundThreads.h"
#include "base/Origin.h"
#include "streaming/tool/YtDlpVersion.h"

#include <QByteArray>
#include <QCoroTask>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QSysInfo>

#include <expected>
#include <optional>
#include <stop_token>

namespace orvane {

class HttpClient;

/// The servers that yt-dlp comes from; nullopt turns a server off.
struct YtDlpSources {
    /// Names the newest release.
    std::optional<Origin> gitHubApi;
    /// Has the files of the releases and their checksums.
    std::optional<Origin> gitHub;
    /// Has the install script of Homebrew.
    std::optional<Origin> gitHubRaw;
    /// The processor that the files are for, as Qt names it.
    QString architecture = QSysInfo::buildCpuArchitecture();
};

/// Why the released file could not be had. A value; any thread.
enum class YtDlpDownloadError {
    noChecksums,   ///< The list of the release's files and their checksums could not be had.
    noFile,        ///< The release has no file for this machine.
    incomplete,    ///< The transfer failed, or the file could not be written.
    wrongChecksum, ///< The file is not the one that was released.
    doesNotRun,    ///< The file does not run on this machine.
};

/// Returns a sentence for the user. Any thread.
[[nodiscard]] QString errorDescription(YtDlpDownloadError error);

/// Returns the names of the released files that may run on a machine, the best one first. The
/// file for Python needs version 3.10; `python` is what its `--version` prints. Any thread.
[[nodiscard]] QStringList releaseFiles(const QString& architecture, const QString& python);

/// The newest release of yt-dlp: its version and its file for this machine. Owned by `YtDlpTool`;
/// main thread, which it never blocks.
class YtDlpRelease {
public:
    /// `stop` ends every transfer.
    YtDlpRelease(ToolRunner& tools, HttpClient& http, YtDlpSources sources, std::stop_token stop);

    /// Returns the tag of the newest release, unchanged, or nullopt on any error.
    [[nodiscard]] QCoro::Task<std::optional<QString>> latestVersion();

    using Downloaded = std::expected<YtDlpCandidate, YtDlpDownloadError>;

    /// Downloads the best file for this machine to `destination`, whose folder is made. The file
    /// appears there only when it is complete, has its published checksum, and has run here.
    [[nodiscard]] QCoro::Task<Downloaded> download(QString destination);

private:
    /// The names of the release's files and their checksums, in lower-case hexadecimal digits.
    using Checksums = QHash<QString, QByteArray>;

    [[nodiscard]] QCoro::Task<std::optional<Checksums>> checksums(Origin releases);
    [[nodiscard]] QCoro::Task<QString> pythonVersion();
    [[nodiscard]] QCoro::Task<Downloaded> downloadFile(QString address, QByteArray checksum,
                                                       QString destination);

    /// Replaces the file for Python, which is an archive, by a link to its contents, unpacked
    /// beside it and compiled: a start then takes a third of the time. Leaves the file as it is
    /// where that fails.
    [[nodiscard]] QCoro::Task<> unpack(YtDlpCommand packed, QString workFolder, QString checksum,
                                       QString version);
    [[nodiscard]] QCoro::Task<bool> extract(QString archive, QString folder);

    ToolRunner& m_tools;
    HttpClient& m_http;
    YtDlpSources m_sources;
    std::stop_token m_stop;
    BackgroundThreads m_disk{1};
};

} // namespace orvane
