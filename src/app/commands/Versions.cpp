// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commands/Versions.h"

#include "language/Translation.h"

#include "app/commands/Revision.h"
#include "model/AppConstants.h"
#include "platform/media/MpvInstance.h"
#include "platform/system/HostFileSystem.h"
#include "streaming/tool/YtDlpSearch.h"

#include <QProcess>
#include <QStandardPaths>

#include <chrono>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// The executable takes a second to start on a slow machine.
constexpr std::chrono::milliseconds ytDlpTimeout{5000};

/// Returns the path of the yt-dlp that is used first for streams, or an empty text.
QString findYtDlp() {
    const HostFileSystem host = HostFileSystem::real();
    const YtDlpSearch search = YtDlpSearch::of(YtDlpUser::streamResolver);
    if (const std::optional<QString> path = findInPlaces(host, search))
        return *path;
    const QString inPath = QStandardPaths::findExecutable(u"yt-dlp"_s);
    // The program appends this folder to its own PATH.
    return inPath.isEmpty()
               ? QStandardPaths::findExecutable(u"yt-dlp"_s, {host.home() + u"/.local/bin"_s})
               : inPath;
}

QString ytDlpVersion() {
    const QString path = findYtDlp();
    if (path.isEmpty())
        return translated("CommandLine", "not found");
    QProcess process;
    process.start(path, {u"--version"_s});
    if (!process.waitForFinished(static_cast<int>(ytDlpTimeout.count()))) {
        process.kill();
        process.waitForFinished();
        return translated("CommandLine", "no answer from %1").arg(leftToRight(path));
    }
    const QString version = QString::fromUtf8(process.readAllStandardOutput()).simplified();
    return u"%1 (%2)"_s.arg(version.isEmpty() ? translated("CommandLine", "unknown") : version,
                            path);
}

} // namespace

QString versionText() {
    const QString commit = QString::fromUtf8(revision);
    return translated("CommandLine", "%1 %2\ncommit %3\nQt %4\nlibmpv client API %5\nyt-dlp %6\n")
        .arg(AppConstants::appName, AppConstants::appVersion, commit,
             QString::fromLatin1(qVersion()), mpvApiVersion(), ytDlpVersion());
}

} // namespace orvane
