// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace orvane {

/// What cannot be read on this machine for want of fonts, for the person who set it up; empty when
/// all can be. Main thread, once the windows are there: it looks through all fonts.
[[nodiscard]] QStringList missingFonts();

} // namespace orvane
