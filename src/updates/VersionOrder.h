// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <compare>

namespace orvane {

/// Compares two versions number by number: 1.0 equals 1.0.0, and the pre-release 1.0b1 is older
/// than 1.0. Ignores everything from the first "-" on. Any text is valid; without a number it is 0.
/// Numbers may have any length. QVersionNumber stops at a number above INT_MAX and at the first
/// letter, so that the comparison would still have to be written here. Any thread.
[[nodiscard]] std::weak_ordering compareVersions(QStringView first, QStringView second);

} // namespace orvane
