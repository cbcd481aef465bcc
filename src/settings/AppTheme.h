// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/AllCases.h"

#include <QString>

#include <array>

namespace orvane {

/// The appearance chosen by the user. It is stored and announced only; the user interface follows
/// the system's appearance. A value; any thread.
enum class AppTheme { system, dark, light };

template <>
inline constexpr auto allCases<AppTheme> =
    std::array{AppTheme::system, AppTheme::dark, AppTheme::light};

/// "System", "Dark" or "Light"; also the labels.
[[nodiscard]] QString rawValue(AppTheme theme);

} // namespace orvane
