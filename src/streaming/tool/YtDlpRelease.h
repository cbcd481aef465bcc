// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"

#include <QByteArray>
#include <QCoroTask>
#include <QString>

#include <optional>
#include <stop_token>

namespace orvane {

class HttpClient;
class ToolRunner;

/// The servers that yt-dlp comes from; nullopt turns a server off.
struct YtDlpSources {
    /// Names the newest release.
    std::optional<Origin> gitHubApi;
    /// Has the files of the releases and their checksums.
    std::optional<Origin> gitHub;
    /// Has the install script of Homebrew.
    std::optional<Origin> gitHubRaw;
};

/// The newest release of yt-dlp: its version and its executable for this system. Owned by
/// `YtDlpTool`; main thread, which it never blocks. Returns nullopt on any error.
class YtDlpRelease {
public:
    /// The name of the file that runs on this system.
    static const QString executableName;

    /// `stop` ends every transfer.
    YtDlpRelease(ToolRunner& tools, HttpClient& http, YtDlpSources sources, std::stop_token stop);

    /// Returns the tag of the newest release, unchanged.
    [[nodiscard]] QCoro::Task<std::optional<QString>> latestVersion();

    /// Downloads the executable into the user's own folder of programs and returns its path. The
    /// file appears there only when it is complete, verified and executable.
    [[nodiscard]] QCoro::Task<std::optional<QString>> download();

private:
    [[nodiscard]] QCoro::Task<bool> checksumMatches(Origin releases, QByteArray sha256);

    ToolRunner& m_tools;
    HttpClient& m_http;
    YtDlpSources m_sources;
    std::stop_token m_stop;
};

} // namespace orvane
