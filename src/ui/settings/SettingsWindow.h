// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "platform/desktop/Autostart.h"
#include "ui/settings/AddChannelPage.h"

class QTabWidget;

namespace orvane {

class AppState;
class ChannelRegistry;
class Preferences;
class TaskScope;
class YtDlpUpdates;

/// Edits the preferences and adds and removes custom channels. Controls store their value at once.
/// Created by the application controller on first use and kept, so that it reopens as it was
/// closed; main thread. It stays on top like the player window, which would cover it otherwise.
class SettingsWindow final : public QWidget {
    Q_OBJECT

public:
    /// All references outlive the window.
    struct Collaborators {
        Preferences& preferences;
        const ChannelRegistry& registry;
        AppState& state;
        NotificationCenter& notifications;
        TaskScope& tasks;
        AddChannelPage::Resolve resolve;
        /// The host of the site whose channels can be added.
        QString siteHost;
        Autostart autostart;
        YtDlpUpdates& ytDlp;
        /// Resizes the player window, if there is one; the size is in points.
        std::function<void(QSizeF)> resizePlayer;
    };

    explicit SettingsWindow(const Collaborators& collaborators);
    ~SettingsWindow() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

    void showCustomChannelsTab();

    /// Shows that tab and resolves `text` as if the user had entered it.
    void resolveChannel(const QString& text);

private:
    void addTabKeys();
    /// `step` is 1 or -1; wraps at both ends.
    void selectNeighbour(int step);

    QTabWidget* m_tabView;
    AddChannelPage* m_addChannel;
    NotificationCenter::Token m_openAddChannel;
};

} // namespace orvane
