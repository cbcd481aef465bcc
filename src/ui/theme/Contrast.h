// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QList>

class QPalette;

/// Finds shades of the accent colours that can be read on the backgrounds they are drawn on. Pure;
/// any thread.
namespace orvane {

/// The smallest ratios of luminance between a colour and its background.
inline constexpr double textContrast = 4.5;
inline constexpr double glyphContrast = 3;

/// Returns the ratio of luminance of two opaque colours, from 1 to 21.
[[nodiscard]] double contrast(const QColor& first, const QColor& second);

/// Returns the opaque colour that a translucent one gives on an opaque background.
[[nodiscard]] QColor blended(const QColor& color, const QColor& background);

/// Returns the shade of `hue`, darker or lighter only as far as needed, whose contrast with each of
/// the opaque backgrounds is at least `ratio`. Black or white if no shade has that contrast.
[[nodiscard]] QColor readableShade(const QColor& hue, const QList<QColor>& backgrounds,
                                   double ratio);

/// The colours that a style paints behind the texts of a window. Fusion's tab pages are a little
/// lighter than its buttons.
[[nodiscard]] QList<QColor> windowBackgrounds(const QPalette& palette);
/// The colours of a button, which styles paint as a gradient and darken while it is pressed.
[[nodiscard]] QList<QColor> buttonBackgrounds(const QPalette& palette);
/// Returns what a translucent tint makes of these backgrounds.
[[nodiscard]] QList<QColor> tinted(QList<QColor> backgrounds, const QColor& tint);

} // namespace orvane
