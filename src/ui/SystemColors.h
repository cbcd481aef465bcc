// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

/// The accent colours of controls, the same in light and dark themes. Any thread.
namespace orvane::SystemColors {

inline constexpr QColor blue(0, 122, 255);
inline constexpr QColor purple(175, 82, 222);
inline constexpr QColor green(40, 205, 65);
inline constexpr QColor orange(255, 149, 0);
inline constexpr QColor red(255, 59, 48);
inline constexpr QColor teal(48, 176, 199);

/// Returns `color` with an opacity from 0 to 1.
[[nodiscard]] inline QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

} // namespace orvane::SystemColors
