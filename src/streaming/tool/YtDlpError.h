// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// Why yt-dlp could not be installed. A value; any thread.
enum class YtDlpError { notInstalled, noPython, noReleaseFile };

/// Returns the text for the user.
[[nodiscard]] QString errorDescription(YtDlpError error);

} // namespace orvane
