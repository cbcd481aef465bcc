// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/HostFileSystem.h"
#include "platform/system/Process.h"

#include <QCoroTask>
#include <QString>

#include <optional>

namespace orvane {

/// What the system's `which` prints for yt-dlp, trimmed; empty when it finds none. The caller
/// decides whether the path will do. `environment` is the child's, the program's own where there is
/// none.
[[nodiscard]] QCoro::Task<QString> whichYtDlp(HostFileSystem host, ProcessRunner& processes,
                                              std::optional<QProcessEnvironment> environment);

} // namespace orvane
