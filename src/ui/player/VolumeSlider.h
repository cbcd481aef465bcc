// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSlider>

#include <functional>

namespace orvane {

class AppState;
class Preferences;

/// A slider for the volume from 0 to 1, which starts at the stored volume. Main thread. It changes
/// nothing by itself; it reports the user's input, also during a drag.
class VolumeSlider final : public QSlider {
    Q_OBJECT

public:
    VolumeSlider(const Preferences& preferences, const AppState& state, QWidget* parent = nullptr);

    /// From 0 to 1.
    [[nodiscard]] float floatValue() const;
    /// Called with a volume from 0 to 1 whenever the user moves the slider.
    void onVolumeChange(std::function<void(float)> callback) {
        m_onVolumeChange = std::move(callback);
    }
    /// Shows the volume of the state without reporting it.
    void syncToState();

private:
    void setFloatValue(float volume);
    void sliderChanged();

    const AppState& m_state;
    std::function<void(float)> m_onVolumeChange;
};

} // namespace orvane
