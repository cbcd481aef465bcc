// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"
#include "platform/system/HostFileSystem.h"
#include "platform/system/Process.h"
#include "streaming/YtDlpError.h"

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <expected>
#include <functional>
#include <optional>
#include <stop_token>

namespace orvane {

class Clock;
class HttpClient;
class TaskScope;

/// Where yt-dlp comes from; nothing turns each off.
struct YtDlpSources {
    /// Is asked for the newest release.
    std::optional<Origin> gitHubApi;
    /// Has the releases and their checksums.
    std::optional<Origin> gitHub;
    /// Has the installer of Homebrew.
    std::optional<Origin> gitHubRaw;
};

/// Sees to it that yt-dlp is there: finds it, installs it where it is missing (pip, Homebrew, or a
/// download of the released executable), and upgrades it in the background once in a run when there
/// is a newer release. Owned by the composition root; main thread, which it never blocks. Failures
/// of single steps are silent and lead to the next step; when all have failed there is a
/// `YtDlpError`.
class YtDlpManager {
public:
    /// The executable among the files of a release that runs on this system.
    static const QString releasedExecutable;

    YtDlpManager(HostFileSystem host, ProcessRunner& processes, Clock& clock, HttpClient& http,
                 YtDlpSources sources, TaskScope& background);

    using Installed = std::expected<QString, YtDlpError>;

    /// The absolute path of an executable. The first success of a run starts the search for a newer
    /// release; a fresh installation needs none. May take minutes when it has to install.
    [[nodiscard]] QCoro::Task<Installed> ensureInstalled();

    /// Called with true when an installation begins, and with false when it has ended.
    void onInstalling(std::function<void(bool)> callback) { m_onInstalling = std::move(callback); }

    /// Breaks transfers and waiting off; child processes are ended by their runner.
    void stop() { m_stop.request_stop(); }

    // The steps, each on its own.

    /// The fixed places in their order, then `which`.
    [[nodiscard]] QCoro::Task<std::optional<QString>> findExisting();
    [[nodiscard]] QCoro::Task<Installed> fullSetup();
    [[nodiscard]] QCoro::Task<> autoUpdateIfNeeded();
    /// The tag of the newest release, as it stands.
    [[nodiscard]] QCoro::Task<std::optional<QString>> fetchLatestVersion();
    /// The path of the downloaded executable. It is there only when it is whole.
    [[nodiscard]] QCoro::Task<std::optional<QString>> downloadBinary();
    [[nodiscard]] QCoro::Task<> installHomebrew();

private:
    [[nodiscard]] QCoro::Task<std::optional<QString>> findViaWhich();
    [[nodiscard]] QCoro::Task<bool> ensurePython();
    [[nodiscard]] QCoro::Task<std::optional<QString>> installWithPip();
    [[nodiscard]] QCoro::Task<std::optional<QString>> installWithBrew();
    [[nodiscard]] QCoro::Task<std::optional<QString>> existingAfter(QString program,
                                                                    QStringList arguments);
    [[nodiscard]] QCoro::Task<bool> checksumAgrees(Origin releases, QByteArray sha256);
    [[nodiscard]] QCoro::Task<std::optional<QString>> getVersion(QString path);
    [[nodiscard]] QCoro::Task<bool> upgradeWithPip(QString pip);

    [[nodiscard]] bool hasPython3() const;
    [[nodiscard]] std::optional<QString> findPip() const;
    [[nodiscard]] std::optional<QString> findBrew() const;
    [[nodiscard]] std::optional<QString> firstExisting(const QStringList& paths) const;
    void startUpdateCheck();

    /// What a helper prints, or nothing when it cannot be started or prints no text.
    [[nodiscard]] QCoro::Task<std::optional<QString>> shell(QString program, QStringList arguments);
    /// Whether a helper could be started and ended with status 0.
    [[nodiscard]] QCoro::Task<bool> shellSuccess(QString program, QStringList arguments);

    HostFileSystem m_host;
    ProcessRunner& m_processes;
    Clock& m_clock;
    HttpClient& m_http;
    YtDlpSources m_sources;
    TaskScope& m_background;
    QStringList m_searchPaths;
    std::optional<QString> m_resolvedPath;
    bool m_hasCheckedUpdate = false;
    std::function<void(bool)> m_onInstalling;
    std::stop_source m_stop;
};

} // namespace orvane
