// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/FormPage.h"

#include <functional>

class QPushButton;

namespace orvane {

class NotificationCenter;
class Preferences;

/// Sets the opacity of the player window and offers three sizes for it. Owned by its window; main
/// thread.
class AppearancePage final : public FormPage {
    Q_OBJECT

public:
    /// `resizePlayer` resizes the player window; the size is in points. The references outlive the
    /// page.
    AppearancePage(Preferences& preferences, NotificationCenter& notifications,
                   std::function<void(QSizeF)> resizePlayer);

protected:
    void changeEvent(QEvent* event) override;
    void fontChanged() override;

private:
    void addOpacitySlider();
    void addPresets();
    void addLevel();
    void opacityChanged(double opacity);
    /// `width` is the content width in points.
    void sizePresetTapped(int width);
    void highlightPreset(int width);
    /// Returns the style sheet of the chosen preset.
    [[nodiscard]] QString highlightStyle() const;

    struct Preset {
        int width;
        QPushButton* button;
    };

    Preferences& m_preferences;
    NotificationCenter& m_notifications;
    std::function<void(QSizeF)> m_resizePlayer;
    QList<Preset> m_presets;
};

} // namespace orvane
