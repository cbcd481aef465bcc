// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

/// The accent colours of controls, the same in light and dark themes. On a light background they
/// are too pale for text: `readableShade` gives the shade to draw with. Any thread.
namespace orvane::SystemColors {

inline constexpr QColor blue(0, 122, 255);
inline constexpr QColor purple(175, 82, 222);
inline constexpr QColor green(40, 205, 65);
inline constexpr QColor orange(255, 149, 0);
inline constexpr QColor red(255, 59, 48);
inline constexpr QColor gray(142, 142, 147);
inline constexpr QColor teal(48, 176, 199);

/// The control bar is as good as opaque, the same in light and dark themes.
inline constexpr QColor bar(237, 237, 237, 242);
/// The text on the bar.
inline constexpr QColor barText(85, 85, 85);
/// Behind a button of the bar while the pointer is over it, and while it is pressed.
inline constexpr QColor barHover(0, 0, 0, 20);
inline constexpr QColor barPressed(0, 0, 0, 46);

/// Returns `color` with an opacity from 0 to 1.
[[nodiscard]] inline QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

} // namespace orvane::SystemColors
