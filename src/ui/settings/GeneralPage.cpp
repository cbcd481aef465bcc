// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/GeneralPage.h"

#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "ui/settings/YtDlpSection.h"
#include "ui/theme/SystemColors.h"
#include "ui/theme/TextColor.h"

#include <QCheckBox>
#include <QComboBox>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

template <typename Enum, typename Text>
QStringList titles(Text text) {
    QStringList list;
    for (const Enum value : allCases<Enum>)
        list += text(value);
    return list;
}

} // namespace

GeneralPage::GeneralPage(Preferences& preferences, AppState& state,
                         NotificationCenter& notifications, const Autostart& autostart,
                         YtDlpUpdates& ytDlp, TaskScope& tasks)
    : m_preferences(preferences),
      m_state(state),
      m_notifications(notifications),
      m_resolution(addPopUp(
          u"resolution"_s, u"Default Resolution:"_s, 320,
          titles<Resolution>([](Resolution resolution) { return displayName(resolution); }))),
      m_autoPlay(
          addCheckBox(u"autoPlay"_s, u"Auto-play last channel on launch"_s, {20, 280, 300, 22})),
      m_theme(addPopUp(u"theme"_s, u"Appearance:"_s, 240,
                       titles<AppTheme>([](AppTheme theme) { return rawValue(theme); }))),
      m_shortcutsInTextFields(addCheckBox(u"shortcutsInTextFields"_s,
                                          u"Use single-key shortcuts while typing"_s,
                                          {20, 220, 320, 22})),
      m_shortcutsInGhostMode(addCheckBox(u"shortcutsInGhostMode"_s,
                                         u"In ghost mode, use shortcuts in other programs too"_s,
                                         {20, 195, 320, 22})),
      m_autostart(autostart),
      m_startAtLogin(
          addCheckBox(u"startAtLogin"_s, u"Start Orvane at login"_s, {20, 170, 320, 22})),
      m_autostartError(addLabel({}, {42, 148, 420, 20}, {.size = 12})),
      m_preparesNextChannels(addCheckBox(u"preparesNextChannels"_s, u"Prepare the next channels"_s,
                                         {20, 124, 320, 22})),
      m_ytDlp(new YtDlpSection(ytDlp, tasks)) {
    place(m_ytDlp, {20, 24, 480, 90});
    setTextColor(*m_autostartError, SystemColors::red);
    m_autostartError->setObjectName(u"autostartFault"_s);
    connect(m_resolution, &QComboBox::activated, this, &GeneralPage::resolutionChanged);
    connect(m_theme, &QComboBox::activated, this, &GeneralPage::themeChanged);
    connect(m_autoPlay, &QCheckBox::clicked, this,
            [this](bool isOn) { m_preferences.setAutoPlayLastChannel(isOn); });
    connect(m_shortcutsInTextFields, &QCheckBox::clicked, this,
            [this](bool isOn) { m_preferences.setShortcutsInTextFields(isOn); });
    connect(m_shortcutsInGhostMode, &QCheckBox::clicked, this,
            &GeneralPage::shortcutsInGhostModeChanged);
    connect(m_preparesNextChannels, &QCheckBox::clicked, this,
            &GeneralPage::preparesNextChannelsChanged);
    connect(m_startAtLogin, &QCheckBox::clicked, this, &GeneralPage::autostartChanged);
}

void GeneralPage::refresh() {
    m_resolution->setCurrentText(rawValue(m_preferences.resolution()));
    m_autoPlay->setChecked(m_preferences.autoPlayLastChannel());
    m_theme->setCurrentText(rawValue(m_preferences.theme()));
    m_shortcutsInTextFields->setChecked(m_preferences.shortcutsInTextFields());
    m_shortcutsInGhostMode->setChecked(m_preferences.shortcutsInGhostMode().value_or(false));
    m_startAtLogin->setChecked(m_autostart.isEnabled());
    m_autostartError->clear();
    m_preparesNextChannels->setChecked(m_preferences.preparesNextChannels());
    m_ytDlp->refresh();
}

QCheckBox* GeneralPage::addCheckBox(const QString& name, const QString& title,
                                    const QRectF& frame) {
    auto* box = new QCheckBox(title);
    box->setObjectName(name);
    place(box, frame, Width::grows);
    return box;
}

QComboBox* GeneralPage::addPopUp(const QString& name, const QString& caption, double y,
                                 const QStringList& titles) {
    QLabel* label = addCaption(caption, {20, y, 140, 20});
    auto* popUp = new QComboBox;
    popUp->setObjectName(name);
    popUp->setAccessibleName(caption.chopped(1));
    // Qt names a pop-up by its value, and only this relation tells a screen reader what it is for.
    label->setBuddy(popUp);
    popUp->addItems(titles);
    place(popUp, {160, y - 2, 140, 26});
    return popUp;
}

void GeneralPage::resolutionChanged() {
    if (const auto resolution = fromRawValue<Resolution>(m_resolution->currentText()))
        m_state.setResolution(*resolution);
}

void GeneralPage::themeChanged() {
    const auto theme = fromRawValue<AppTheme>(m_theme->currentText());
    if (!theme)
        return;
    m_preferences.setTheme(*theme);
    m_notifications.post(AppNotification::themeChanged, *theme);
}

void GeneralPage::shortcutsInGhostModeChanged(bool isOn) {
    m_preferences.setShortcutsInGhostMode(isOn);
    m_notifications.post(AppNotification::shortcutsInGhostModeChanged, isOn);
}

void GeneralPage::preparesNextChannelsChanged(bool isOn) {
    m_preferences.setPreparesNextChannels(isOn);
    m_notifications.post(AppNotification::preparesNextChannelsChanged, isOn);
}

void GeneralPage::autostartChanged(bool isOn) {
    const bool isSaved = m_autostart.setEnabled(isOn);
    m_startAtLogin->setChecked(m_autostart.isEnabled());
    m_autostartError->setText(isSaved ? QString() : u"The autostart folder cannot be changed."_s);
}

} // namespace orvane
