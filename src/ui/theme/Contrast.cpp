// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/theme/Contrast.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace orvane {

namespace {

constexpr int lightnessSteps = 255;

/// As WCAG 2.1 defines it.
double luminance(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double smallestContrast(const QColor& color, const QList<QColor>& backgrounds) {
    double smallest = 21;
    for (const QColor& background : backgrounds)
        smallest = std::min(smallest, contrast(color, background));
    return smallest;
}

} // namespace

double contrast(const QColor& first, const QColor& second) {
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor blended(const QColor& color, const QColor& background) {
    const auto mix = [part = color.alphaF()](float over, float under) {
        return over * part + under * (1 - part);
    };
    return QColor::fromRgbF(mix(color.redF(), background.redF()),
                            mix(color.greenF(), background.greenF()),
                            mix(color.blueF(), background.blueF()))
        .toRgb();
}

QColor readableShade(const QColor& hue, const QList<QColor>& backgrounds, double ratio) {
    if (smallestContrast(hue, backgrounds) >= ratio)
        return hue;
    const bool isOnLight =
        smallestContrast(Qt::black, backgrounds) > smallestContrast(Qt::white, backgrounds);
    const int start = hue.toHsl().lightness();
    for (int lightness = start; lightness >= 0 && lightness <= lightnessSteps;
         lightness += isOnLight ? -1 : 1) {
        // Rounded to what a screen shows.
        const QColor shade =
            QColor::fromRgb(QColor::fromHsl(hue.hslHue(), hue.hslSaturation(), lightness).rgb());
        if (smallestContrast(shade, backgrounds) >= ratio)
            return shade;
    }
    return isOnLight ? Qt::black : Qt::white;
}

QList<QColor> windowBackgrounds(const QPalette& palette) {
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    const QColor button = palette.color(QPalette::Active, QPalette::Button);
    return {window, window.lighter(112), button.lighter(128)};
}

QList<QColor> buttonBackgrounds(const QPalette& palette) {
    const QColor button = palette.color(QPalette::Active, QPalette::Button);
    return {button, button.darker(115), button.lighter(145)};
}

QList<QColor> tinted(QList<QColor> backgrounds, const QColor& tint) {
    for (QColor& background : backgrounds)
        background = blended(tint, background);
    return backgrounds;
}

} // namespace orvane
