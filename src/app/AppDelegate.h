// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/DesktopIntegration.h"
#include "app/commands/Verb.h"
#include "base/NotificationCenter.h"
#include "model/Channel.h"
#include "ui/AboutWindow.h"
#include "ui/ApplicationActions.h"
#include "ui/HotkeyManager.h"
#include "ui/menus/MenuBarManager.h"
#include "ui/player/PlayerWindow.h"
#include "ui/settings/SettingsWindow.h"
#include "updates/UpdaterController.h"

#include <QCoroTask>
#include <QObject>

#include <memory>
#include <vector>

namespace orvane {

struct Services;

/// The application controller: starts the program, owns its windows, reacts to the notifications
/// that ask for window-level actions, and ends it. Owned by `main`; main thread.
class AppDelegate final : public QObject, public ApplicationActions {
    Q_OBJECT

public:
    explicit AppDelegate(Services& services);
    ~AppDelegate() override;

    /// Installs menu and keys, opens the player window, and does what the command line asks for.
    /// Unless that names a channel, it first plays the last one, or else the first featured one.
    void applicationDidFinishLaunching(const QList<Verb::Value>& verbs = {});

    /// Does at once what was asked from a command line.
    void perform(const Verb::Value& verb);

    /// Saves what is to be saved, hides the window, and leaves the event loop with exit code 0 as
    /// soon as no child process and no player is left, or when the person has waited long enough.
    void terminate() override;

    void showPlayer() override;
    void playChannel(const QString& id) override;
    void menuChannelSelected(const QString& id) override;
    void menuResolutionSelected(const QString& rawValue) override;
    void menuSleepTimer(int minutes) override;
    void menuCancelSleepTimer() override;
    void menuOpenSettings() override;
    void menuAddChannel() override;
    void menuToggleGhostMode() override;
    void menuShowAbout() override;
    void menuCheckForUpdates() override;

    /// Whether everything that was started has ended; if not, the process must be left at once.
    [[nodiscard]] bool isDrained() const { return m_isDrained; }

Q_SIGNALS:
    /// The end has begun: nothing can be asked any more.
    void terminating();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followTheSession();
    void registerObservers();
    void markMilestones();
    void openPlayerWindow();
    /// Opens the player window and plays.
    void open(const Channel& channel);
    void openSettings();
    void openAddChannel();
    void closePlayerWindow();
    void storeWindowFrame();
    void playAtLaunch();
    void playNeighbor(ChannelStep step);
    void applicationWillTerminate();
    [[nodiscard]] QCoro::Task<> prepareYtDlp();
    void retryOnceAfterInstalling();
    QCoro::Task<> drain();

    Services& m_services;
    MenuSources m_menuSources;
    MenuBarManager m_menuBarManager;
    HotkeyManager m_hotkeys;
    UpdaterController m_updaterController;
    DesktopIntegration m_desktop;
    std::unique_ptr<PlayerWindow> m_playerWindow;
    std::unique_ptr<SettingsWindow> m_settingsWindow;
    std::unique_ptr<AboutWindow> m_aboutWindow;
    std::vector<NotificationCenter::Token> m_observers;
    bool m_hasInstalledYtDlp = false;
    bool m_isRetryDue = false;
    bool m_isTerminating = false;
    bool m_isDrained = false;
};

} // namespace orvane
