// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/FormPage.h"

#include <functional>

class QPushButton;

namespace orvane {

class NotificationCenter;
class Preferences;

/// How the player window looks: its opacity, and three sizes to choose from. Owned by its window;
/// main thread.
class AppearancePage final : public FormPage {
    Q_OBJECT

public:
    /// `resizePlayer` gives the player window another size in points. What is passed by reference
    /// outlives the page.
    AppearancePage(Preferences& preferences, NotificationCenter& notifications,
                   std::function<void(QSizeF)> resizePlayer);

private:
    void addOpacitySlider();
    void addPresets();
    void opacityChanged(double opacity);
    /// `width` in points, without the frame of the window.
    void sizePresetTapped(int width);
    void highlightPreset(int width);

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
