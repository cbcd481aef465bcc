// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/HostFileSystem.h"
#include "platform/system/Process.h"
#include "streaming/StreamError.h"

#include <QCoroTask>
#include <QFuture>
#include <QString>
#include <QStringList>

#include <expected>
#include <optional>
#include <stop_token>

namespace orvane {

/// How yt-dlp is started: as an executable of its own, or as a module of the system's Python.
struct YtDlpCommand {
    enum class Kind { executable, pythonModule };

    Kind kind = Kind::executable;
    /// Absolute path of what is started.
    QString program;

    /// The whole argument list for yt-dlp's own `arguments`.
    [[nodiscard]] QStringList argumentsFor(const QStringList& arguments) const;

    friend bool operator==(const YtDlpCommand&, const YtDlpCommand&) = default;
};

/// Finds yt-dlp for the stream resolver and installs it where it is missing. What was found once is
/// trusted for the rest of the run. Owned by the resolver; main thread. Children inherit the
/// program's environment. An installation goes on when the caller loses interest, so that switching
/// channels does not break it off, and is shared by all who wait for it; it ends with the program.
class YtDlpLocator {
public:
    YtDlpLocator(HostFileSystem host, ProcessRunner& processes);

    using Found = std::expected<YtDlpCommand, StreamError::Value>;

    /// Searches, and as the last resort installs. May take minutes in that case.
    [[nodiscard]] QCoro::Task<Found> findYtDlp();

    /// What `findYtDlp` has found, if anything.
    [[nodiscard]] const std::optional<YtDlpCommand>& known() const { return m_known; }

    /// The system's Python, whether it exists or not.
    [[nodiscard]] QString python() const;

private:
    [[nodiscard]] std::optional<YtDlpCommand> probeFixedPlaces() const;
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> findViaWhich();
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> checkPythonModule();
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> search();
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCommand>> searchAfterInstall();
    [[nodiscard]] QCoro::Task<bool> installYtDlp();
    [[nodiscard]] QCoro::Task<bool> installOnce();
    [[nodiscard]] QCoro::Task<bool> succeeds(QString program, QStringList arguments);

    HostFileSystem m_host;
    ProcessRunner& m_processes;
    std::optional<YtDlpCommand> m_known;
    std::optional<QFuture<bool>> m_installation;
};

} // namespace orvane
