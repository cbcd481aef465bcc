// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace orvane {

/// Returns one warning per script that no installed font has, for the log; empty if none is
/// missing. Main thread. Call it after the first window is shown, as it searches all fonts.
[[nodiscard]] QStringList missingFonts();

} // namespace orvane
