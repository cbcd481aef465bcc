// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "settings/AppTheme.h"

#include <QObject>
#include <QPalette>

namespace orvane {

class Preferences;

/// Returns the program's own palette of a light or a dark theme. Pure.
[[nodiscard]] QPalette lightPalette();
[[nodiscard]] QPalette darkPalette();

/// Gives the whole program the theme that the preferences name, at once and after each
/// `themeChanged`. "System" leaves the desktop's palette and style, also when the desktop changes
/// them, except for secondary texts that could not be read. Owned by `main`; main thread. A style
/// that draws in its own colours is replaced by Fusion while another theme is chosen.
class Theme final : public QObject {
    Q_OBJECT

public:
    /// Both outlive it. Needs the application object, whose palette nothing else has set.
    Theme(const Preferences& preferences, NotificationCenter& notifications);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void apply(AppTheme theme);
    void useStyle(const QString& name);
    /// Makes the desktop's palette readable.
    void mendDesktopPalette();

    QString m_desktopStyle;
    AppTheme m_theme = AppTheme::system;
    NotificationCenter::Token m_themeChanged;
};

} // namespace orvane
