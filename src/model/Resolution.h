// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/AllCases.h"

#include <QString>

#include <array>

namespace orvane {

/// The maximum quality chosen by the user, passed to yt-dlp as a format selector. A value; any
/// thread.
enum class Resolution { r360, r480, r720, rBest };

template <>
inline constexpr auto allCases<Resolution> =
    std::array{Resolution::r360, Resolution::r480, Resolution::r720, Resolution::rBest};

/// "360p", "480p", "720p" or "Best"; stored and shown in menus.
[[nodiscard]] QString rawValue(Resolution resolution);
[[nodiscard]] QString displayName(Resolution resolution);

/// Height in pixels. The sentinel 9999 for `rBest` lets heights be compared without a special case.
[[nodiscard]] int heightValue(Resolution resolution);

/// Argument of yt-dlp's "-f" option.
[[nodiscard]] QString ytdlpFormat(Resolution resolution);

} // namespace orvane
