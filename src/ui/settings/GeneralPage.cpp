// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/GeneralPage.h"

#include "language/Translation.h"

#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "ui/DisplayText.h"
#include "ui/settings/YtDlpSection.h"
#include "ui/theme/SystemColors.h"
#include "ui/theme/TextColor.h"

#include <QCheckBox>
#include <QComboBox>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

template <typename Enum>
QStringList titles() {
    QStringList list;
    for (const Enum value : allCases<Enum>)
        list += title(value);
    return list;
}

/// The position of a case in its pop-up.
template <typename Enum>
int indexOf(Enum value) {
    return static_cast<int>(std::ranges::find(allCases<Enum>, value) - allCases<Enum>.begin());
}

/// The first is the system's; each of the others is in its own language, for who does not
/// understand the present one.
QStringList languages() {
    QStringList list{translated("Settings", "System")};
    for (const Language language : allLanguages)
        list += nativeName(language);
    return list;
}

/// Returns the caption as a name; French has a space before the colon.
QString withoutColon(const QString& caption) {
    return caption.chopped(caption.endsWith(u':') ? 1 : 0).trimmed();
}

QStringList bufferLengthTitles() {
    QStringList list;
    for (const std::chrono::minutes length : Preferences::bufferLengths) {
        const auto minutes = static_cast<int>(length.count());
        list += minutes == 0 ? translated("Settings", "Nothing")
                             : translated("Settings", "%n minutes", nullptr, minutes);
    }
    return list;
}

} // namespace

GeneralPage::GeneralPage(Preferences& preferences, AppState& state,
                         NotificationCenter& notifications, const Autostart& autostart,
                         YtDlpUpdates& ytDlp, TaskScope& tasks)
    : m_preferences(preferences),
      m_state(state),
      m_notifications(notifications),
      m_language(addPopUp(u"language"_s, translated("Settings", "Language:"), 360, languages())),
      m_resolution(addPopUp(u"resolution"_s, translated("Settings", "Default Resolution:"), 320,
                            titles<Resolution>())),
      m_autoPlay(addCheckBox(u"autoPlay"_s,
                             translated("Settings", "Auto-play last channel on launch"),
                             {20, 280, 300, 22})),
      m_theme(addPopUp(u"theme"_s, translated("Settings", "Appearance:"), 240, titles<AppTheme>())),
      m_bufferLength(addPopUp(u"bufferLength"_s, translated("Settings", "Keep to Go Back:"), 208,
                              bufferLengthTitles())),
      m_shortcutsInTextFields(addCheckBox(
          u"shortcutsInTextFields"_s,
          translated("Settings", "Use single-key shortcuts while typing"), {20, 182, 320, 22})),
      m_shortcutsInGhostMode(
          addCheckBox(u"shortcutsInGhostMode"_s,
                      translated("Settings", "In ghost mode, use shortcuts in other programs too"),
                      {20, 160, 320, 22})),
      m_autostart(autostart),
      m_startAtLogin(addCheckBox(u"startAtLogin"_s, translated("Settings", "Start Orvane at login"),
                                 {20, 138, 320, 22})),
      m_autostartError(addLabel({}, {42, 118, 420, 20}, {.size = 12})),
      m_preparesNextChannels(addCheckBox(u"preparesNextChannels"_s,
                                         translated("Settings", "Prepare the next channels"),
                                         {20, 98, 320, 22})),
      m_ytDlp(new YtDlpSection(ytDlp, tasks)) {
    const QString when = translated("Settings", "From the next start on");
    m_language->setAccessibleDescription(when);
    addLabel(when, {308, 360, 180, 20}, {.size = 12, .color = QPalette::PlaceholderText});
    place(m_ytDlp, {20, 4, 480, 90});
    setTextColor(*m_autostartError, SystemColors::red);
    m_autostartError->setObjectName(u"autostartFault"_s);
    connect(m_language, &QComboBox::activated, this, &GeneralPage::languageChanged);
    connect(m_resolution, &QComboBox::activated, this, &GeneralPage::resolutionChanged);
    connect(m_theme, &QComboBox::activated, this, &GeneralPage::themeChanged);
    connect(m_bufferLength, &QComboBox::activated, this, &GeneralPage::bufferLengthChanged);
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
    const std::optional<Language> language = m_preferences.language();
    m_language->setCurrentIndex(language ? static_cast<int>(*language) + 1 : 0);
    m_resolution->setCurrentIndex(indexOf(m_preferences.resolution()));
    m_autoPlay->setChecked(m_preferences.autoPlayLastChannel());
    m_theme->setCurrentIndex(indexOf(m_preferences.theme()));
    m_bufferLength->setCurrentIndex(static_cast<int>(
        std::ranges::find(Preferences::bufferLengths, m_preferences.bufferLength()) -
        Preferences::bufferLengths.begin()));
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
    popUp->setAccessibleName(withoutColon(caption));
    // Qt names a pop-up by its value, and only this relation tells a screen reader what it is for.
    label->setBuddy(popUp);
    popUp->addItems(titles);
    place(popUp, {160, y - 2, 140, 26});
    return popUp;
}

void GeneralPage::languageChanged(int index) {
    m_preferences.setLanguage(index == 0 ? std::nullopt
                                         : std::optional(allLanguages.at(index - 1)));
}

void GeneralPage::resolutionChanged(int index) {
    m_state.setResolution(allCases<Resolution>.at(index));
}

void GeneralPage::themeChanged(int index) {
    const AppTheme theme = allCases<AppTheme>.at(index);
    m_preferences.setTheme(theme);
    m_notifications.post(AppNotification::themeChanged, theme);
}

void GeneralPage::bufferLengthChanged(int index) {
    m_state.setBufferLength(Preferences::bufferLengths.at(std::size_t(index)));
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
    m_autostartError->setText(
        isSaved ? QString() : translated("Settings", "The autostart folder cannot be changed."));
}

} // namespace orvane
