// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/AllCases.h"

#include <QString>

#include <array>

namespace orvane {

/// The appearance a person chose. It is stored and announced; the interface follows the system's
/// appearance whatever it says. A value; any thread.
enum class AppTheme { system, dark, light };

template <>
inline constexpr auto allCases<AppTheme> =
    std::array{AppTheme::system, AppTheme::dark, AppTheme::light};

/// "System", "Dark" or "Light", which are the labels too.
[[nodiscard]] QString rawValue(AppTheme theme);

} // namespace orvane
