// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

namespace orvane {

/// How many characters have to be put in, taken out or changed to make one text of the other; at
/// most the length of the longer one. Takes time in proportion to both lengths. Any thread.
[[nodiscard]] qsizetype editDistance(QStringView a, QStringView b);

/// Whether `typed` is so close to `wanted` that it may be a slip.
[[nodiscard]] bool mayBeSlip(QStringView typed, QStringView wanted);

} // namespace orvane
