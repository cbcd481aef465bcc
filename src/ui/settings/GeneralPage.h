// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/Autostart.h"
#include "ui/FormPage.h"

class QCheckBox;
class QComboBox;

namespace orvane {

class AppState;
class NotificationCenter;
class Preferences;
class TaskScope;
class YtDlpSection;
class YtDlpUpdates;

/// General settings: resolution, launch, theme, keyboard and yt-dlp. Each control stores its value
/// at once. Owned by its window; main thread.
class GeneralPage final : public FormPage {
    Q_OBJECT

public:
    /// All references outlive the page.
    GeneralPage(Preferences& preferences, AppState& state, NotificationCenter& notifications,
                const Autostart& autostart, YtDlpUpdates& ytDlp, TaskScope& tasks);

protected:
    void refresh() override;

private:
    QCheckBox* addCheckBox(const QString& name, const QString& title, const QRectF& frame);
    QComboBox* addPopUp(const QString& name, const QString& caption, double y,
                        const QStringList& titles);
    void languageChanged(int index);
    void resolutionChanged(int index);
    void themeChanged(int index);
    void bufferLengthChanged(int index);
    void shortcutsInGhostModeChanged(bool isOn);
    void preparesNextChannelsChanged(bool isOn);
    void autostartChanged(bool isOn);

    Preferences& m_preferences;
    AppState& m_state;
    NotificationCenter& m_notifications;
    QComboBox* m_language;
    QComboBox* m_resolution;
    QCheckBox* m_autoPlay;
    QComboBox* m_theme;
    QComboBox* m_bufferLength;
    QCheckBox* m_shortcutsInTextFields;
    QCheckBox* m_shortcutsInGhostMode;
    Autostart m_autostart;
    QCheckBox* m_startAtLogin;
    QLabel* m_autostartError;
    QCheckBox* m_preparesNextChannels;
    YtDlpSection* m_ytDlp;
};

} // namespace orvane
