// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// Returns what `--version` prints: a line each for Orvane with the commit it was built from, Qt,
/// libmpv and yt-dlp. Needs neither a display nor an application object. Runs yt-dlp, and blocks
/// for up to 5 seconds.
[[nodiscard]] QString versionText();

} // namespace orvane
