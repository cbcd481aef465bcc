// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/theme/Contrast.h"

#include "ui/SystemColors.h"
#include "ui/player/BarColors.h"
#include "ui/theme/TextColor.h"

#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace orvane {

using namespace SystemColors;

namespace {

double smallest(const QColor& color, const QList<QColor>& backgrounds) {
    double ratio = 21;
    for (const QColor& background : backgrounds)
        ratio = std::min(ratio, contrast(color, background));
    return ratio;
}

TEST(ContrastTest, EveryTintCanBeReadInLightAndDark) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.01);
    EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
    const struct {
        QColor hue;
        double tint;
    } pairs[] = {
        // Titles of categories, the chosen preset, and texts without a tint behind them.
        {blue, 0.15}, {green, 0.15}, {purple, 0.15}, {orange, 0.15}, {teal, 0.15},
        {blue, 0.2},  {blue, 0.4},   {blue, 0},      {red, 0},       {green, 0},
    };
    QLabel label;
    QPushButton button;
    for (const QPalette& palette : {QPalette(QColor(239, 239, 239)), QPalette(QColor(53, 53, 53)),
                                    QPalette(Qt::white), QPalette(QColor(20, 20, 24))}) {
        label.setPalette(palette);
        button.setPalette(palette);
        const QList<QColor> window = windowBackgrounds(palette);
        for (const auto& [hue, tint] : pairs) {
            setTextColor(label, hue, withAlpha(hue, tint));
            const QColor shown = label.palette().color(QPalette::WindowText);
            EXPECT_GE(smallest(shown, tinted(window, withAlpha(hue, tint))), textContrast);
            EXPECT_NEAR(shown.hslHue(), hue.hslHue(), 4);
            setTextColor(button, hue);
            EXPECT_GE(
                smallest(button.palette().color(QPalette::ButtonText), buttonBackgrounds(palette)),
                textContrast);
        }
        EXPECT_GE(smallest(readableShade(orange, window, glyphContrast), window), glyphContrast);
    }
    EXPECT_GE(smallest(barText, tinted({Qt::black, Qt::white}, bar)), textContrast);
    for (const QColor& hue : {blue, purple, green, orange, red})
        EXPECT_GE(smallest(readableShade(hue, barBackgrounds(), glyphContrast), barBackgrounds()),
                  glyphContrast);
}

} // namespace
} // namespace orvane
