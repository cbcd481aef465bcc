// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppWindows.h"
#include "app/DesktopIntegration.h"
#include "app/YtDlpPreparation.h"
#include "app/commands/Verb.h"
#include "base/NotificationCenter.h"
#include "ui/ApplicationActions.h"
#include "ui/HotkeyManager.h"
#include "ui/menus/MenuBarManager.h"
#include "ui/window/GhostKeysQuestion.h"

#include <QCoroTask>
#include <QElapsedTimer>
#include <QObject>

#include <vector>

namespace orvane {

class LocalProcessRunner;
class MpvTeardownQueue;
class SleepTimer;
class StreamLadder;
class TelemetryService;
class Timeline;
class UpdaterController;
class YtDlpTool;

/// The application controller: starts and ends the program, carries out the commands of menus, keys
/// and command lines, and reacts to the notifications that concern windows. Owned by `main`; main
/// thread.
class AppDelegate final : public QObject, public ApplicationActions {
    Q_OBJECT

public:
    /// All outlive it.
    struct Collaborators {
        Preferences& preferences;
        const ChannelRegistry& registry;
        AppState& state;
        NotificationCenter& notifications;
        EventMonitor& events;
        PlayerManager& player;
        SleepTimer& sleepTimer;
        TelemetryService& telemetry;
        const Timeline& timeline;
        UpdaterController& updater;
        YtDlpManager& ytDlp;
        YtDlpTool& ytDlpTool;
        StreamLadder& ladder;
        LocalProcessRunner& processes;
        TaskScope& tasks;
        MpvTeardownQueue& teardown;
        AppWindows::Collaborators windows;
        DesktopIntegration::Collaborators desktop;
    };

    explicit AppDelegate(const Collaborators& collaborators);
    ~AppDelegate() override;

    /// Installs the menu and the keys, opens the player window, and carries out `verbs`. If none of
    /// them names a channel, first plays the last channel, or else the first featured one.
    void applicationDidFinishLaunching(const QList<Verb::Value>& verbs = {});

    /// Carries out one verb of a command line.
    void perform(const Verb::Value& verb);

    /// Saves the state, hides the windows, and leaves the event loop with exit code 0 when all
    /// child processes and players have ended or a time limit has passed.
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
    void menuGoBack() override;
    void menuGoLive() override;
    void menuToggleSoundOnly() override;
    void menuShowAbout() override;
    void menuCheckForUpdates() override;

    /// Returns whether all background work has ended. If not, the process must exit without running
    /// destructors, as these would wait for it.
    [[nodiscard]] bool isDrained() const { return m_isDrained; }

Q_SIGNALS:
    /// Emitted when `terminate` begins; from then on, commands are no longer accepted.
    void terminating();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followSession();
    void registerObservers();
    void ghostModeChanged(bool isOn);
    void markMilestones();
    void playerExposed();
    void closePlayerWindow();
    /// Shows the player's window, and with it the picture.
    void presentPlayer();
    void goBack(const QString& seconds);
    void playAtLaunch();
    void playNeighbor(ChannelStep step);
    void applicationWillTerminate();
    QCoro::Task<> drain();
    void giveUpDraining();

    Collaborators m_with;
    DesktopIntegration m_desktop;
    MenuSources m_menuSources;
    MenuBarManager m_menuBarManager;
    HotkeyManager m_hotkeys;
    AppWindows m_windows;
    YtDlpPreparation m_ytDlpPreparation;
    std::unique_ptr<GhostKeysQuestion> m_ghostKeysQuestion;
    std::vector<NotificationCenter::Token> m_observers;
    QElapsedTimer m_sinceTerminate;
    bool m_isTerminating = false;
    bool m_isDrained = false;
};

} // namespace orvane
