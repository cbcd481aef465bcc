// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <compare>

namespace orvane {

/// Which of two versions is the newer one, number by number: 1.0 and 1.0.0 are the same, and 1.0b1,
/// whose letters mark it as what comes before 1.0, is older. All from the first "-" on is ignored.
/// Every text is a version, one without any number is 0; numbers may have any length. Any thread.
[[nodiscard]] std::weak_ordering compareVersions(QStringView first, QStringView second);

} // namespace orvane
