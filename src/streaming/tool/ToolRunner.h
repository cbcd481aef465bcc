// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/HostFileSystem.h"
#include "platform/system/Process.h"

#include <QCoroTask>
#include <QString>
#include <QStringList>

#include <optional>
#include <stop_token>

namespace orvane {

/// The environment of a child process: the program's own, or with the folders of Homebrew and the
/// system in front of PATH, because a program started from a desktop may inherit a short one.
enum class ToolEnvironment { inherited, extendedPath };

/// Returns nullopt for the program's own environment.
[[nodiscard]] std::optional<QProcessEnvironment> variables(ToolEnvironment environment);

/// Runs yt-dlp and the programs that find and install it. Logs each call: the command, its exit
/// status, how long it took, and the captured standard error. Owned by `YtDlpTool`; main thread,
/// which it never blocks; there is no time limit.
class ToolRunner {
public:
    ToolRunner(HostFileSystem host, ProcessRunner& processes);

    [[nodiscard]] const HostFileSystem& host() const { return m_host; }

    /// A stop ends the child; the result is then meaningless.
    [[nodiscard]] QCoro::Task<ProcessOutcome> run(ProcessRequest request, std::stop_token stop);

    /// Returns what the program prints, or nullopt if it cannot be started or prints no UTF-8.
    [[nodiscard]] QCoro::Task<std::optional<QString>> output(QString program, QStringList arguments,
                                                             ToolEnvironment environment);

    /// Returns whether the program could be started and exited with status 0.
    [[nodiscard]] QCoro::Task<bool> succeeds(QString program, QStringList arguments,
                                             ToolEnvironment environment);

    /// Runs pip or Homebrew and returns whether that could be started and exited with status 0. It
    /// is never cut off, which would leave yt-dlp broken for the user's whole account: it goes on
    /// when the program ends. Only one runs at a time for an account; the next one waits for it,
    /// and then finds little left to do.
    [[nodiscard]] QCoro::Task<bool> install(QString program, QStringList arguments,
                                            std::optional<QProcessEnvironment> environment);

    /// Returns the first of the system's files that exists. A leading "~" is the home.
    [[nodiscard]] std::optional<QString> firstExisting(const QStringList& paths) const;

private:
    HostFileSystem m_host;
    ProcessRunner& m_processes;
};

} // namespace orvane
