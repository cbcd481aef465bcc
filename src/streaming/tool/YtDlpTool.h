// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "streaming/tool/NewestYtDlp.h"
#include "streaming/tool/ToolRunner.h"
#include "streaming/tool/YtDlpInstaller.h"
#include "streaming/tool/YtDlpPlan.h"
#include "streaming/tool/YtDlpRelease.h"
#include "streaming/tool/YtDlpSearch.h"

#include <QCoroTask>
#include <QFuture>
#include <QHash>
#include <QList>

#include <functional>
#include <optional>
#include <stop_token>
#include <utility>

namespace orvane {

class Clock;
class HttpClient;

/// Knows which yt-dlp each of its users has found, and which installation is running: there is
/// never more than one, and every caller meanwhile waits for it and gets what it installs. An
/// installation continues when its caller is cancelled, so that switching channels does not
/// interrupt it. Owned by the composition root; main thread, which it never blocks.
class YtDlpTool {
public:
    /// `privateCopy` is where Orvane keeps a yt-dlp of its own, which none of the searches finds;
    /// an empty path for none.
    YtDlpTool(HostFileSystem host, ProcessRunner& processes, Clock& clock, HttpClient& http,
              YtDlpSources sources, QString privateCopy = {});
    YtDlpTool(const YtDlpTool&) = delete;
    YtDlpTool& operator=(const YtDlpTool&) = delete;

    using Installed = YtDlpInstaller::Installed;

    /// Returns `known(search)` if there is one, else searches.
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> find(YtDlpSearch search);

    /// Returns what was found or installed for the user of `search`, as long as that keeps it.
    [[nodiscard]] std::optional<YtDlpCommand> known(const YtDlpSearch& search) const;

    /// Waits for the running installation, if there is one, and returns what was installed in this
    /// run; if nothing was, installs by `plan`. A caller that waits for an installation by its own
    /// plan also gets its failure. May take minutes.
    [[nodiscard]] QCoro::Task<Installed> install(YtDlpPlan plan);

    using Candidate = YtDlpCandidate;
    /// Returns the newest yt-dlp on the machine, the private copy included; nullopt if none runs.
    [[nodiscard]] QCoro::Task<std::optional<Candidate>> newest() { return m_newest.find(); }
    [[nodiscard]] const QString& privateCopy() const { return m_newest.privateCopy(); }

    /// Sets the function that is called when an installation, an upgrade or the private copy has
    /// brought what may be a newer yt-dlp.
    void onNewer(std::function<void()> callback) { m_onNewer = std::move(callback); }
    /// Says that an upgrade or the private copy has.
    void becameNewer();

    /// Searches for the user of `plan`, and installs by it if nothing is found.
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> findOrInstall(YtDlpPlan plan);

    /// Returns what `askVersion` does.
    [[nodiscard]] QCoro::Task<std::optional<QString>> version(YtDlpCommand command);

    /// If `command` does not run, returns the next one that the user of `plan` finds, or else what
    /// the plan installs. Returns nullopt if it runs, if there is no other, and if this was tried
    /// before in this run. May take minutes.
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> replaceIfBroken(YtDlpCommand command,
                                                                           YtDlpPlan plan);

    /// Cancels all transfers and waiting, of later calls too. Their runner ends child processes.
    void stop() { m_stop.request_stop(); }

    [[nodiscard]] ToolRunner& runner() { return m_runner; }
    [[nodiscard]] YtDlpRelease& release() { return m_release; }

private:
    struct Installation {
        YtDlpUser user;
        QFuture<Installed> result;
    };

    [[nodiscard]] QCoro::Task<Installed> runInstallation(YtDlpPlan plan);

    ToolRunner m_runner;
    std::stop_source m_stop;
    YtDlpRelease m_release;
    YtDlpInstaller m_installer;
    NewestYtDlp m_newest;
    std::function<void()> m_onNewer;
    QHash<YtDlpUser, YtDlpCommand> m_known;
    std::optional<Installation> m_installation;
    /// What was installed last in this run.
    std::optional<YtDlpCommand> m_installed;
    QList<BrokenTool> m_broken;
    /// For whom a replacement of which tool was looked for.
    QList<std::pair<YtDlpUser, YtDlpCommand>> m_replaced;
};

} // namespace orvane
