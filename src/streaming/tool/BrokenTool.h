// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/ProcessRequest.h"

#include <QDateTime>
#include <QString>

namespace orvane {

/// An executable that was found and does not run, such as a script whose Python module is gone. It
/// counts as missing until its file is replaced. A value; any thread.
struct BrokenTool {
    QString path;
    /// When the file was changed last.
    QDateTime changed;

    /// Describes the file as it is now.
    [[nodiscard]] static BrokenTool at(const QString& path);

    friend bool operator==(const BrokenTool&, const BrokenTool&) = default;
};

/// Returns whether a failed call looks as if yt-dlp itself did not run, and not as if the site or
/// the network were the cause. Only `--version` tells for certain. Any thread.
[[nodiscard]] bool seemsNotToRun(const ProcessOutcome& outcome);

} // namespace orvane
