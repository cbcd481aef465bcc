// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "streaming/tool/ToolRunner.h"
#include "streaming/tool/YtDlpCommand.h"

#include <QCoroTask>
#include <QDate>
#include <QString>

#include <optional>
#include <stop_token>

namespace orvane {

/// A yt-dlp that runs, and the version that it has printed. A value; any thread.
struct YtDlpCandidate {
    YtDlpCommand command;
    QString version;
};

/// Returns the day that a version such as "2026.10.26" or "2026.10.26.123456" names, or nullopt for
/// a version of another form. Any thread.
[[nodiscard]] std::optional<QDate> releaseDay(const QString& version);

/// Returns whether `version` is newer than `other`. One that names no day is older than any that
/// does. Any thread.
[[nodiscard]] bool isNewerVersion(const QString& version, const QString& other);

/// Returns what `--version` prints, or nullopt if the tool does not run: it cannot be started,
/// fails, or prints nothing. `tools` must outlive the task.
[[nodiscard]] QCoro::Task<std::optional<QString>>
askVersion(ToolRunner& tools, YtDlpCommand command, std::stop_token stop);

} // namespace orvane
