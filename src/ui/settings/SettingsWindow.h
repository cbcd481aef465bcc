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

/// The window that edits the stored settings and adds and removes channels of the person's own.
/// Controls write their value at once. Created by the application controller on first need and
/// kept, so that it comes back as it was closed; main thread. It floats as the player window does,
/// which would lie on it otherwise.
class SettingsWindow final : public QWidget {
    Q_OBJECT

public:
    /// All outlive the window.
    struct Collaborators {
        Preferences& preferences;
        const ChannelRegistry& registry;
        AppState& state;
        NotificationCenter& notifications;
        TaskScope& tasks;
        AddChannelPage::Resolve resolve;
        /// Of the site whose channels can be added.
        QString siteHost;
        Autostart autostart;
        /// Gives the player window, where there is one, another size in points.
        std::function<void(QSizeF)> resizePlayer;
    };

    explicit SettingsWindow(const Collaborators& collaborators);
    ~SettingsWindow() override;

    void showCustomChannelsTab();

    /// Shows that tab, and resolves the text there as if it had been typed.
    void resolveChannel(const QString& text);

private:
    QTabWidget* m_tabView;
    AddChannelPage* m_addChannel;
    NotificationCenter::Token m_openAddChannel;
};

} // namespace orvane
