// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

namespace orvane {

/// Returns how many characters must be inserted, removed or replaced to turn one text into the
/// other (the Levenshtein distance); at most the length of the longer text. Runs in time
/// proportional to the product of the lengths. Any thread. Neither Qt nor the standard library
/// offers a distance between texts.
[[nodiscard]] qsizetype editDistance(QStringView a, QStringView b);

/// Returns whether `typed` is close enough to `known` to be a misspelling of it.
[[nodiscard]] bool isLikelyTypo(QStringView typed, QStringView known);

} // namespace orvane
