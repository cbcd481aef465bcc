// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// The keys that play the favourites, in the favourites' order. They are keys by their place on the
/// keyboard; these are the characters that a US layout has there.
inline constexpr QLatin1StringView favoriteKeys{"123465=97"};

/// What the favourite at `index`, counted from 0, is told to be.
[[nodiscard]] inline QString favoriteText(qsizetype index) {
    using namespace Qt::StringLiterals;
    const QString text = u"Favourite %1"_s.arg(index + 1);
    return index < favoriteKeys.size() ? text + u" (key %1)"_s.arg(favoriteKeys[index]) : text;
}

} // namespace orvane
