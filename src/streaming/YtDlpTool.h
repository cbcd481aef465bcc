// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "streaming/ToolRunner.h"
#include "streaming/YtDlpInstaller.h"
#include "streaming/YtDlpPlan.h"
#include "streaming/YtDlpRelease.h"
#include "streaming/YtDlpSearch.h"

#include <QCoroTask>
#include <QFuture>
#include <QHash>

#include <optional>
#include <stop_token>

namespace orvane {

class Clock;
class HttpClient;

/// Knows which yt-dlp each of its users has found, and which installation is running: there is
/// never more than one, and all who ask meanwhile wait for it and get what it installs. An
/// installation goes on when its caller loses interest, so that switching channels does not
/// interrupt it. Owned by the composition root; main thread, which it never blocks.
class YtDlpTool {
public:
    YtDlpTool(HostFileSystem host, ProcessRunner& processes, Clock& clock, HttpClient& http,
              YtDlpSources sources);
    YtDlpTool(const YtDlpTool&) = delete;
    YtDlpTool& operator=(const YtDlpTool&) = delete;

    using Installed = YtDlpInstaller::Installed;

    /// Returns what the search has found before, as long as it keeps that, or searches.
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> find(YtDlpSearch search);

    /// Returns what was found before, as long as `search` keeps it.
    [[nodiscard]] std::optional<YtDlpCommand> known(const YtDlpSearch& search) const;

    /// Returns what an installation of this run has installed, waiting for the one that is running;
    /// installs by `plan` if there is none or it has failed. Those who wait for an installation by
    /// their own plan share its failure too. May take minutes.
    [[nodiscard]] QCoro::Task<Installed> install(YtDlpPlan plan);

    /// Ends transfers and waiting for good; child processes are ended by their runner.
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
    QHash<YtDlpUser, YtDlpCommand> m_known;
    std::optional<Installation> m_installation;
    /// What was installed last in this run.
    std::optional<YtDlpCommand> m_installed;
};

} // namespace orvane
