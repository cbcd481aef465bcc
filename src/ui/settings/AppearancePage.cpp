// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/AppearancePage.h"

#include "language/Translation.h"

#include "base/NotificationCenter.h"
#include "model/AppConstants.h"
#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "ui/theme/Contrast.h"
#include "ui/theme/SystemColors.h"

#include <QCheckBox>
#include <QEvent>
#include <QPushButton>
#include <QSlider>

#include <array>
#include <cmath>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Slider steps from transparent to opaque: screen readers read the value as it is, so per cent.
constexpr int opacitySteps = 100;
constexpr double lowestOpacity = 0.3;
/// Of the blue behind the chosen preset's title.
constexpr double chosenOpacity = 0.2;
constexpr double pressedOpacity = 0.4;

struct PresetTitle {
    const char* title;
    int width;
};
constexpr std::array presetTitles{PresetTitle{QT_TRANSLATE_NOOP("Settings", "Small"), 320},
                                  PresetTitle{QT_TRANSLATE_NOOP("Settings", "Medium"), 480},
                                  PresetTitle{QT_TRANSLATE_NOOP("Settings", "Large"), 720}};

} // namespace

AppearancePage::AppearancePage(Preferences& preferences, NotificationCenter& notifications,
                               std::function<void(QSizeF)> resizePlayer)
    : m_preferences(preferences),
      m_notifications(notifications),
      m_resizePlayer(std::move(resizePlayer)) {
    addOpacitySlider();
    addPresets();
    addLevel();
}

void AppearancePage::addLevel() {
    auto* box = new QCheckBox(translated("Settings", "Stay above full-screen windows"));
    box->setObjectName(u"staysAboveFullScreen"_s);
    box->setChecked(m_preferences.staysAboveFullScreen());
    connect(box, &QCheckBox::clicked, this, [this](bool isOn) {
        m_preferences.setStaysAboveFullScreen(isOn);
        m_notifications.post(AppNotification::staysAboveFullScreenChanged, isOn);
    });
    place(box, {160, 240, 320, 22}, Width::grows);
}

void AppearancePage::addOpacitySlider() {
    QLabel* caption = addCaption(translated("Settings", "Window Opacity:"), {20, 320, 140, 20});
    auto* slider = new QSlider(Qt::Horizontal);
    caption->setBuddy(slider);
    slider->setObjectName(u"opacity"_s);
    slider->setAccessibleName(translated("Settings", "Window Opacity"));
    slider->setRange(qRound(lowestOpacity * opacitySteps), opacitySteps);
    slider->setSingleStep(opacitySteps / 100);
    slider->setPageStep(opacitySteps / 10);
    slider->setValue(qRound(m_preferences.usableWindowOpacity() * opacitySteps));
    connect(slider, &QSlider::valueChanged, this,
            [this](int value) { opacityChanged(double(value) / opacitySteps); });
    QLabel* number = addLabel({}, {368, 320, 60, 20}, {});
    number->setObjectName(u"opacityNumber"_s);
    const auto show = [number](int value) {
        number->setText(translated("Settings", "%1 %").arg(localNumber(value)));
    };
    connect(slider, &QSlider::valueChanged, number, show);
    show(slider->value());
    place(slider, {160, 320, 200, 22});
}

void AppearancePage::addPresets() {
    addCaption(translated("Settings", "Window Size Preset:"), {20, 280, 140, 20});
    for (double x = 160; const auto& [title, width] : presetTitles) {
        auto* button = new QPushButton(translated("Settings", title));
        button->setObjectName(u"preset%1"_s.arg(width));
        connect(button, &QPushButton::clicked, this,
                [this, tag = width] { sizePresetTapped(tag); });
        place(button, {x, 278, 80, 26});
        m_presets.append({width, button});
        x += 90;
    }
    highlightPreset(m_preferences.windowSizePreset());
}

void AppearancePage::opacityChanged(double opacity) {
    m_preferences.setWindowOpacity(opacity);
    m_notifications.post(AppNotification::windowOpacityChanged, opacity);
}

void AppearancePage::sizePresetTapped(int width) {
    m_preferences.setWindowSizePreset(width);
    highlightPreset(width);
    m_resizePlayer(
        {double(width), width / AppConstants::aspectRatio + AppConstants::controlBarHeight});
}

QString AppearancePage::highlightStyle() const {
    const QColor blue = SystemColors::blue;
    QList<QColor> backgrounds;
    for (const double opacity : {chosenOpacity, pressedOpacity})
        backgrounds += tinted(windowBackgrounds(palette()), SystemColors::withAlpha(blue, opacity));
    const QString background =
        u"rgba(%1, %2, %3, "_s.arg(blue.red()).arg(blue.green()).arg(blue.blue());
    return u"QPushButton { border: none; border-radius: %1px; color: %2; background: %3%4%); }"
           u"QPushButton:focus { border: 1px solid %2; }"
           u"QPushButton:pressed { background: %3%5%); }"_s.arg(qRound(6 * scale()))
               .arg(readableShade(blue, backgrounds, textContrast).name(), background)
               .arg(chosenOpacity * 100)
               .arg(pressedOpacity * 100);
}

void AppearancePage::changeEvent(QEvent* event) {
    FormPage::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        highlightPreset(m_preferences.windowSizePreset());
}

void AppearancePage::fontChanged() {
    highlightPreset(m_preferences.windowSizePreset());
}

void AppearancePage::highlightPreset(int width) {
    const QString highlight = highlightStyle();
    for (const Preset& preset : std::as_const(m_presets)) {
        preset.button->setStyleSheet(preset.width == width ? highlight : QString());
        preset.button->setAccessibleDescription(
            preset.width == width ? translated("Settings", "Chosen") : QString());
    }
}

} // namespace orvane
