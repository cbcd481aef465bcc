// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/Translation.h"

#include <QString>

namespace orvane {

/// The keys that play the favourites, in the order of the favourites. The keys are identified by
/// their position on the keyboard; these are the characters of a US layout.
inline constexpr QLatin1StringView favoriteKeys{"123465=97"};

/// Returns the tool tip of the favourite at `index`, counted from 0.
[[nodiscard]] inline QString favoriteToolTip(qsizetype index) {
    const QString number = localNumber(index + 1);
    return index < favoriteKeys.size() ? translated("Settings", "Favourite %1 (key %2)")
                                             .arg(number, leftToRight(QString(favoriteKeys[index])))
                                       : translated("Settings", "Favourite %1").arg(number);
}

} // namespace orvane
