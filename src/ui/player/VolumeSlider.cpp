// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/VolumeSlider.h"

#include "language/Translation.h"

#include "settings/Preferences.h"
#include "state/AppState.h"

#include <QSignalBlocker>

#include <cmath>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int steps = 1000;

} // namespace

VolumeSlider::VolumeSlider(const Preferences& preferences, const AppState& state, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), m_state(state) {
    setRange(0, steps);
    setPageStep(steps / 10);
    setAccessibleName(translated("Player", "Volume"));
    setFloatValue(preferences.usableVolume());
    connect(this, &QSlider::valueChanged, this, &VolumeSlider::sliderChanged);
}

float VolumeSlider::floatValue() const {
    return static_cast<float>(value()) / steps;
}

void VolumeSlider::setFloatValue(float volume) {
    setValue(static_cast<int>(std::lround(volume * steps)));
}

void VolumeSlider::syncToState() {
    const QSignalBlocker blocker(this);
    setFloatValue(m_state.volume());
}

void VolumeSlider::sliderChanged() {
    if (m_onVolumeChange)
        m_onVolumeChange(floatValue());
}

} // namespace orvane
