// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/theme/Contrast.h"

#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "support/EventLoop.h"
#include "support/StateFixture.h"
#include "ui/player/BarColors.h"
#include "ui/theme/SystemColors.h"
#include "ui/theme/TextColor.h"
#include "ui/theme/Theme.h"

#include <QApplication>
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
    for (const QPalette& palette :
         {lightPalette(), darkPalette(), QPalette(Qt::white), QPalette(QColor(20, 20, 24))}) {
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

class ThemeTest : public testing::Test, protected test::StateFixture {};

TEST_F(ThemeTest, EveryPaletteCanBeReadAndTheDesktopsReturns) {
    using enum QPalette::ColorRole;
    const QColor desktop = QApplication::palette().color(Window);
    preferences.setTheme(AppTheme::dark);
    QLabel red;
    red.show(); // A hidden label is told when it is shown.
    {
        const Theme theme(preferences, notifications);
        setTextColor(red, SystemColors::red);
        for (const AppTheme choice : {AppTheme::dark, AppTheme::light, AppTheme::system}) {
            if (choice != AppTheme::dark)
                notifications.post(AppNotification::themeChanged, choice);
            test::settle();
            const QPalette palette = QApplication::palette();
            EXPECT_EQ(palette.color(Window).lightness() < 100, choice == AppTheme::dark);
            EXPECT_GE(contrast(red.palette().color(WindowText), palette.color(Window)), 4.5);
            for (const auto& [text, background] :
                 {std::pair(WindowText, Window), std::pair(Text, Base),
                  std::pair(ButtonText, Button), std::pair(PlaceholderText, Window),
                  std::pair(PlaceholderText, Base), std::pair(ToolTipText, ToolTipBase),
                  std::pair(Link, Base)})
                EXPECT_GE(contrast(palette.color(text), palette.color(background)), textContrast)
                    << rawValue(choice).toStdString() << text;
            for (const QPalette::ColorRole text : {WindowText, Text, ButtonText})
                EXPECT_GE(contrast(palette.color(QPalette::Disabled, text), palette.color(Window)),
                          textContrast);
        }
        for (const QPalette& palette : {lightPalette(), darkPalette()})
            EXPECT_GE(contrast(palette.color(HighlightedText), palette.color(Highlight)),
                      textContrast);
        EXPECT_EQ(QApplication::palette().color(Window), desktop);
    }
    QApplication::setPalette(QPalette());
}

} // namespace
} // namespace orvane
