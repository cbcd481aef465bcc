// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppDelegate.h"

#include "app/Timeline.h"
#include "base/Logging.h"
#include "base/Overloaded.h"
#include "base/TaskScope.h"
#include "platform/media/MpvMediaPlayer.h"
#include "platform/system/Process.h"
#include "playback/PlayerManager.h"
#include "playback/SleepTimer.h"
#include "settings/Preferences.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "streaming/tool/YtDlpTool.h"
#include "telemetry/TelemetryService.h"
#include "ui/MissingFonts.h"
#include "ui/menus/ContextMenuBuilder.h"
#include "updates/UpdaterController.h"

#include <QCoreApplication>
#include <QDebug>
#include <QGuiApplication>
#include <QSessionManager>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace orvane {

namespace {

/// Ending a player whose server hangs can take much longer than the user should wait.
constexpr std::chrono::milliseconds drainLimit{400};

} // namespace

AppDelegate::AppDelegate(const Collaborators& collaborators)
    : m_with(collaborators),
      m_desktop(m_with.desktop, *this),
      m_menuSources{.registry = m_with.registry,
                    .preferences = m_with.preferences,
                    .state = m_with.state,
                    .sleepTimerMinutes = [this] { return m_with.sleepTimer.minutes(); }},
      m_menuBarManager(m_menuSources, *this),
      m_hotkeys({.state = m_with.state,
                 .preferences = m_with.preferences,
                 .registry = m_with.registry,
                 .player = m_with.player,
                 .notifications = m_with.notifications,
                 .events = m_with.events,
                 .actions = *this}),
      m_windows(
          m_with.windows, *this,
          [this] { return ContextMenuBuilder::build(m_menuSources, m_menuBarManager.presence()); }),
      m_ytDlpPreparation({.ytDlp = m_with.ytDlp,
                          .tool = m_with.ytDlpTool,
                          .ladder = m_with.ladder,
                          .state = m_with.state,
                          .healing = m_desktop.healing(),
                          .notifications = m_with.notifications,
                          .timeline = m_with.timeline,
                          .tasks = m_with.tasks,
                          .showInstalling = [this](bool isOn) { m_windows.setInstalling(isOn); }}) {
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching(const QList<Verb::Value>& verbs) {
    followSession();
    m_menuBarManager.setup(m_desktop.sessionBus());
    m_hotkeys.start();
    m_menuBarManager.onShownChanged([this](bool isShown) {
        m_with.notifications.post(AppNotification::statusItemShownChanged, isShown);
    });
    registerObservers();
    m_windows.onPlayerExposed([this] { playerExposed(); });
    m_windows.showPlayer();
    const auto isPlay = [](const Verb::Value& verb) {
        return std::holds_alternative<Verb::Play>(verb);
    };
    if (std::ranges::none_of(verbs, isPlay))
        playAtLaunch();
    if (m_with.preferences.ghostModeEnabled())
        m_with.state.setGhostMode(true);
    m_with.preferences.setOnboardingCompleted(true);
    m_desktop.start();
    m_ytDlpPreparation.start();
    for (const Verb::Value& verb : verbs)
        perform(verb);
}

void AppDelegate::perform(const Verb::Value& verb) {
    qCInfo(logApp).noquote() << "command line:" << Verb::encode({verb});
    NotificationCenter& notifications = m_with.notifications;
    std::visit(
        Overloaded{
            [&](const Verb::Show&) { showPlayer(); },
            [&](const Verb::Play& play) { playChannel(play.text); },
            [&](const Verb::Next&) { playNeighbor(ChannelStep::next); },
            [&](const Verb::Previous&) { playNeighbor(ChannelStep::previous); },
            [&](const Verb::Back& back) { goBack(back.text); },
            [&](const Verb::Live&) { menuGoLive(); },
            [&](const Verb::ToggleGhost&) { menuToggleGhostMode(); },
            [&](const Verb::Mute&) { m_with.player.toggleMute(); },
            [&](const Verb::Settings&) { notifications.post(AppNotification::openSettings); },
            [&](const Verb::Add& add) {
                notifications.post(AppNotification::openAddChannel, add.text);
            },
            [&](const Verb::Quit&) { terminate(); },
        },
        verb);
}

void AppDelegate::showPlayer() {
    if (m_isTerminating)
        return;
    presentPlayer();
    if (!m_with.state.currentChannel())
        playAtLaunch();
}

void AppDelegate::presentPlayer() {
    m_with.player.setSoundOnly(false);
    m_windows.showPlayer();
}

void AppDelegate::goBack(const QString& seconds) {
    bool isNumber = false;
    const int number = seconds.toInt(&isNumber);
    m_with.player.goBack(isNumber ? std::chrono::seconds(number) : usualStepBack);
}

void AppDelegate::playNeighbor(ChannelStep step) {
    // Without a current channel, showing the player plays the same as a start.
    if (m_with.state.currentChannel())
        m_with.player.playNeighbor(step);
    if (!m_with.state.isSoundOnly())
        showPlayer();
}

void AppDelegate::followSession() {
    QCoreApplication::instance()->installEventFilter(this);
    // The logout can still be cancelled, so this saves the frame but ends nothing.
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager&) {
        if (m_windows.hasPlayer())
            m_windows.storePlayerFrame();
    });
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    // At the end of the session, Qt would close the windows one by one, and closing the player
    // clears the channel that the next start should play.
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
        return false;
    terminate();
    return true;
}

void AppDelegate::registerObservers() {
    const auto observe = [this](auto topic, auto react) {
        m_observers.push_back(m_with.notifications.addObserver(topic, std::move(react)));
    };
    markMilestones();
    observe(AppNotification::openSettings, [this] { m_windows.showSettings(); });
    observe(AppNotification::openAddChannel,
            [this](const QString& text) { m_windows.showAddChannel(text); });
    observe(AppNotification::closePlayer, [this] { closePlayerWindow(); });
    observe(AppNotification::channelChanged, [this] { m_menuBarManager.updateCurrentChannel(); });
    observe(AppNotification::sleepTimerFired, [this] { m_windows.closePlayer(); });
    observe(AppNotification::soundOnlyChanged, [this] { m_menuBarManager.rebuildMenu(); });
    observe(AppNotification::bufferLengthChanged,
            [this](std::chrono::minutes length) { m_with.player.setBufferLength(length); });
    observe(AppNotification::ghostModeChanged, [this](bool isOn) { ghostModeChanged(isOn); });
}

void AppDelegate::ghostModeChanged(bool isOn) {
    m_menuBarManager.rebuildMenu();
    if (m_ghostKeysQuestion)
        m_ghostKeysQuestion->hide();
    if (!isOn || m_with.preferences.shortcutsInGhostMode())
        return;
    if (!m_ghostKeysQuestion)
        m_ghostKeysQuestion = std::make_unique<GhostKeysQuestion>([this](bool isAllowed) {
            m_ghostKeysQuestion->hide();
            m_with.preferences.setShortcutsInGhostMode(isAllowed);
            m_with.notifications.post(AppNotification::shortcutsInGhostModeChanged, isAllowed);
        });
    m_ghostKeysQuestion->show();
}

void AppDelegate::markMilestones() {
    NotificationCenter& notifications = m_with.notifications;
    const Timeline& timeline = m_with.timeline;
    m_observers.push_back(notifications.addObserver(AppNotification::streamLoading,
                                                    [&timeline] { timeline.mark("loading"); }));
    m_observers.push_back(notifications.addObserver(AppNotification::streamResolved,
                                                    [&timeline] { timeline.mark("playing"); }));
    m_observers.push_back(notifications.addObserver(
        AppNotification::streamError,
        [&timeline](const QString& message) { timeline.mark("error", message); }));
}

void AppDelegate::playerExposed() {
    m_with.timeline.mark("window-shown");
    m_with.telemetry.appLaunched();
    for (const QString& font : missingFonts())
        qWarning().noquote() << font;
}

void AppDelegate::closePlayerWindow() {
    m_windows.storePlayerFrame();
    m_with.player.stop();
    m_with.player.setSoundOnly(false);
    m_with.state.setCurrentChannel(std::nullopt);
    m_windows.hidePlayer();
}

void AppDelegate::playAtLaunch() {
    const Preferences& preferences = m_with.preferences;
    std::optional<Channel> channel;
    if (const auto lastId = preferences.lastChannelID();
        lastId && preferences.autoPlayLastChannel())
        channel = m_with.registry.channel(*lastId);
    if (!channel) {
        // A start plays something even if the last channel is not to be played.
        const QList<Channel> featured = m_with.registry.featured();
        if (!featured.isEmpty())
            channel = featured.first();
    }
    if (channel)
        m_with.player.play(*channel);
}

void AppDelegate::playChannel(const QString& id) {
    const std::optional<Channel> channel = m_with.registry.channel(id);
    if (!channel)
        return;
    presentPlayer();
    m_with.player.play(*channel);
}

void AppDelegate::menuChannelSelected(const QString& id) {
    playChannel(id);
    if (const std::optional<Channel> channel = m_with.registry.channel(id))
        m_with.telemetry.channelPlayed(*channel);
}

void AppDelegate::menuResolutionSelected(const QString& text) {
    const auto resolution = fromRawValue<Resolution>(text);
    if (!resolution)
        return;
    m_with.state.setResolution(*resolution);
    m_with.player.retryCurrent();
    if (const auto& channel = m_with.state.currentChannel())
        m_with.telemetry.channelPlayed(*channel);
}

void AppDelegate::menuSleepTimer(int minutes) {
    m_with.sleepTimer.schedule(minutes);
}

void AppDelegate::menuCancelSleepTimer() {
    m_with.sleepTimer.cancel();
}

void AppDelegate::menuOpenSettings() {
    m_windows.showSettings();
}

void AppDelegate::menuAddChannel() {
    m_windows.showAddChannel({});
}

void AppDelegate::menuShowAbout() {
    m_windows.showAbout();
}

void AppDelegate::menuToggleGhostMode() {
    m_with.state.setGhostMode(!m_with.state.isGhostMode());
}

void AppDelegate::menuGoBack() {
    m_with.player.goBack(usualStepBack);
}

void AppDelegate::menuGoLive() {
    m_with.player.goLive();
}

void AppDelegate::menuToggleSoundOnly() {
    if (m_with.state.isSoundOnly()) {
        showPlayer();
    } else if (m_with.state.currentChannel()) {
        m_windows.storePlayerFrame();
        m_with.player.setSoundOnly(true);
        m_windows.hidePlayer();
    }
}

void AppDelegate::menuCheckForUpdates() {
    m_with.updater.checkForUpdates();
}

void AppDelegate::terminate() {
    if (m_isTerminating)
        return;
    m_isTerminating = true;
    m_sinceTerminate.start();
    qCInfo(logApp, "terminating; %d tasks, %d players", m_with.tasks.count(),
           m_with.teardown.count());
    Q_EMIT terminating();
    applicationWillTerminate();
    m_windows.hideAll();
    m_desktop.stop();
    m_with.updater.stop();
    m_ytDlpPreparation.stop();
    m_with.ytDlpTool.stop();
    m_with.processes.shutDown();
    QTimer::singleShot(drainLimit, this, &AppDelegate::giveUpDraining);
    drain();
}

void AppDelegate::applicationWillTerminate() {
    m_hotkeys.stop();
    m_with.player.stop();
    m_with.sleepTimer.cancel();
    if (m_windows.hasPlayer())
        m_windows.storePlayerFrame();
}

QCoro::Task<> AppDelegate::drain() {
    co_await m_with.tasks.join();
    co_await m_with.teardown.empty();
    m_isDrained = true;
    qCInfo(logApp, "drained after %lld ms", m_sinceTerminate.elapsed());
    QCoreApplication::exit(0);
}

void AppDelegate::giveUpDraining() {
    if (!m_isDrained)
        qCWarning(logApp, "not drained after %lld ms; leaving %d tasks and %d players",
                  m_sinceTerminate.elapsed(), m_with.tasks.count(), m_with.teardown.count());
    QCoreApplication::exit(0);
}

} // namespace orvane
