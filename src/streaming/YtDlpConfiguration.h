// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/HostFileSystem.h"

#include <QString>

#include <optional>

namespace orvane {

/// The configuration files of the user's own that yt-dlp reads before its arguments. Pure functions
/// and reads of small files; any thread. A file that cannot be read has no options.
namespace YtDlpConfiguration {

/// Returns the first file with an option that turns a call for an address into something else: one
/// that prints more, downloads, or waits. `program` is what is run.
[[nodiscard]] std::optional<QString> obstacle(const HostFileSystem& host, const QString& program);

/// Returns whether the text of such a file has such an option.
[[nodiscard]] bool isObstacle(const QString& text);

} // namespace YtDlpConfiguration

} // namespace orvane
