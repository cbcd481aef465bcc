// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/theme/Theme.h"

#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "ui/theme/Contrast.h"

#include <QApplication>
#include <QEvent>
#include <QStyle>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Secondary texts may have a faint tint behind them.
constexpr double secondaryContrast = 5.5;

struct Shades {
    QColor window;
    QColor base;
    QColor button;
    QColor text;
    QColor link;
};

/// Returns the colour of secondary texts: a mixture of text and background that can be read.
QColor secondaryText(const QPalette& palette) {
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    QColor half = palette.color(QPalette::Active, QPalette::WindowText);
    half.setAlphaF(0.5F);
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    return readableShade(blended(half, window), windowBackgrounds(palette) << base,
                         secondaryContrast);
}

/// The titles in the menus are disabled entries, and are read like any other text.
void setSecondary(QPalette& palette, const QColor& color) {
    using enum QPalette::ColorRole;
    palette.setColor(PlaceholderText, color);
    for (const QPalette::ColorRole role : {WindowText, Text, ButtonText})
        palette.setColor(QPalette::Disabled, role, color);
}

QPalette makePalette(const Shades& shades) {
    QPalette palette(shades.button, shades.window);
    const auto set = [&](std::initializer_list<QPalette::ColorRole> roles, const QColor& color) {
        for (const QPalette::ColorRole role : roles)
            palette.setColor(role, color);
    };
    using enum QPalette::ColorRole;
    set({WindowText, Text, ButtonText, ToolTipText}, shades.text);
    set({Base}, shades.base);
    set({AlternateBase, ToolTipBase}, shades.window);
    set({BrightText, HighlightedText}, Qt::white);
    set({Highlight}, QColor(0, 100, 210));
    set({Link, LinkVisited}, shades.link);
    const QColor secondary = secondaryText(palette);
    setSecondary(palette, secondary);
    palette.setColor(QPalette::Disabled, HighlightedText, Qt::white);
    palette.setColor(QPalette::Disabled, Highlight, secondary);
    return palette;
}

/// Returns whether the style draws in the application's palette.
bool followsPalette(const QString& style) {
    return QStringList{u"fusion"_s, u"windows"_s, u"breeze"_s}.contains(style.toLower());
}

} // namespace

QPalette lightPalette() {
    return makePalette({.window = QColor(239, 239, 239),
                        .base = Qt::white,
                        .button = QColor(239, 239, 239),
                        .text = Qt::black,
                        .link = QColor(0, 90, 190)});
}

QPalette darkPalette() {
    return makePalette({.window = QColor(45, 45, 45),
                        .base = QColor(30, 30, 30),
                        .button = QColor(50, 50, 50),
                        .text = QColor(240, 240, 240),
                        .link = QColor(100, 175, 255)});
}

Theme::Theme(const Preferences& preferences, NotificationCenter& notifications)
    : m_desktopStyle(QApplication::style()->name()),
      m_themeChanged(notifications.addObserver(AppNotification::themeChanged,
                                               [this](AppTheme theme) { apply(theme); })) {
    qApp->installEventFilter(this);
    apply(preferences.theme());
}

bool Theme::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange &&
        m_theme == AppTheme::system)
        mendDesktopPalette();
    return false;
}

void Theme::apply(AppTheme theme) {
    m_theme = theme;
    if (theme == AppTheme::system) {
        useStyle(m_desktopStyle);
        QApplication::setPalette(QPalette());
        mendDesktopPalette();
        return;
    }
    useStyle(followsPalette(m_desktopStyle) ? m_desktopStyle : u"fusion"_s);
    QApplication::setPalette(theme == AppTheme::dark ? darkPalette() : lightPalette());
}

void Theme::useStyle(const QString& name) {
    if (QApplication::style()->name().compare(name, Qt::CaseInsensitive) != 0)
        QApplication::setStyle(name);
}

void Theme::mendDesktopPalette() {
    const QColor readable = secondaryText(QApplication::palette());
    if (QApplication::palette().color(QPalette::PlaceholderText) == readable)
        return;
    // Only these colours are set, so the others go on following the desktop.
    QPalette palette;
    setSecondary(palette, readable);
    QApplication::setPalette(palette);
}

} // namespace orvane
