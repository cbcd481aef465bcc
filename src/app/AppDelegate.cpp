// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppDelegate.h"

#include "app/Services.h"
#include "app/WindowCollaborators.h"
#include "base/Overloaded.h"
#include "platform/desktop/ShowInFolder.h"
#include "platform/media/VideoView.h"
#include "platform/windowing/FirstExposure.h"
#include "state/AppNotification.h"
#include "ui/MissingFonts.h"
#include "ui/UpdaterDialog.h"
#include "ui/menus/Menu.h"
#include "ui/player/PlayerContainerView.h"

#include <QApplication>
#include <QDebug>
#include <QGuiApplication>
#include <QSessionManager>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <chrono>

namespace orvane {

namespace {

/// A server that hangs may keep a player longer than anybody waits for a program to go.
constexpr std::chrono::milliseconds drainLimit{400};

/// Also out of the task bar, and over what another program shows.
void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

AppDelegate::AppDelegate(Services& services)
    : m_services(services),
      m_menuSources{.registry = services.registry,
                    .preferences = services.preferences,
                    .state = services.state,
                    .sleepTimer = services.sleepTimer},
      m_menuBarManager(m_menuSources, *this),
      m_hotkeys({.state = services.state,
                 .preferences = services.preferences,
                 .registry = services.registry,
                 .player = services.player,
                 .notifications = services.notifications,
                 .events = services.events,
                 .actions = *this}),
      m_updaterController(services.updates, services.http, services.tasks,
                          std::make_unique<UpdaterDialog>(), showInFolder),
      m_desktop(services, *this) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching(const QList<Verb::Value>& verbs) {
    followTheSession();
    m_menuBarManager.setup();
    m_hotkeys.start();
    registerObservers();
    openPlayerWindow();
    const auto isPlay = [](const Verb::Value& verb) {
        return std::holds_alternative<Verb::Play>(verb);
    };
    if (std::ranges::none_of(verbs, isPlay))
        playAtLaunch();
    if (m_services.preferences.ghostModeEnabled())
        m_services.state.setGhostMode(true);
    m_services.preferences.setOnboardingCompleted(true);
    m_desktop.start();
    m_services.tasks.spawn(prepareYtDlp());
    for (const Verb::Value& verb : verbs)
        perform(verb);
}

void AppDelegate::perform(const Verb::Value& verb) {
    NotificationCenter& notifications = m_services.notifications;
    std::visit(
        Overloaded{
            [&](const Verb::Show&) { showPlayer(); },
            [&](const Verb::Play& play) { playChannel(play.text); },
            [&](const Verb::Next&) { playNeighbor(ChannelStep::next); },
            [&](const Verb::Previous&) { playNeighbor(ChannelStep::previous); },
            [&](const Verb::ToggleGhost&) { menuToggleGhostMode(); },
            [&](const Verb::Mute&) { m_services.player.toggleMute(); },
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
    openPlayerWindow();
    if (!m_services.state.currentChannel())
        playAtLaunch();
}

void AppDelegate::playNeighbor(ChannelStep step) {
    // Otherwise showing the window plays what a start would play.
    if (m_services.state.currentChannel())
        m_services.player.playNeighbor(step);
    showPlayer();
}

void AppDelegate::followTheSession() {
    QCoreApplication::instance()->installEventFilter(this);
    // The session may go on after all: only what would be lost is saved.
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager&) {
        if (m_playerWindow)
            storeWindowFrame();
    });
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    // The end of the session. Left alone it would close the windows one after the other, and what
    // is closed is not played again.
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
        return false;
    terminate();
    return true;
}

void AppDelegate::registerObservers() {
    const auto observe = [this](auto topic, auto react) {
        m_observers.push_back(m_services.notifications.addObserver(topic, std::move(react)));
    };
    markMilestones();
    observe(AppNotification::openSettings, [this] { openSettings(); });
    observe(AppNotification::openAddChannel, [this](const QString& text) {
        openAddChannel();
        if (!text.isEmpty())
            m_settingsWindow->resolveChannel(text);
    });
    observe(AppNotification::closePlayer, [this] { closePlayerWindow(); });
    observe(AppNotification::channelChanged, [this] { m_menuBarManager.updateCurrentChannel(); });
    observe(AppNotification::sleepTimerFired, [this] {
        if (m_playerWindow)
            m_playerWindow->close();
    });
    observe(AppNotification::ghostModeChanged, [this] { m_menuBarManager.rebuildMenu(); });
    observe(AppNotification::streamError, [this] { retryOnceAfterInstalling(); });
    observe(AppNotification::streamResolved, [this] { m_isRetryDue = false; });
}

void AppDelegate::markMilestones() {
    NotificationCenter& notifications = m_services.notifications;
    const Timeline& timeline = m_services.timeline;
    m_observers.push_back(notifications.addObserver(AppNotification::streamLoading,
                                                    [&timeline] { timeline.mark("loading"); }));
    m_observers.push_back(notifications.addObserver(AppNotification::streamResolved,
                                                    [&timeline] { timeline.mark("playing"); }));
    m_observers.push_back(notifications.addObserver(
        AppNotification::streamError,
        [&timeline](const QString& message) { timeline.mark("error", message); }));
}

void AppDelegate::openPlayerWindow() {
    if (!m_playerWindow) {
        m_playerWindow =
            std::make_unique<PlayerWindow>(playerWindowCollaborators(m_services, *this, [this] {
                return ContextMenuBuilder::build(m_menuSources, m_menuBarManager.presence());
            }));
        m_playerWindow->winId(); // Makes the native window, whose first exposure is awaited.
        new FirstExposure(m_playerWindow->windowHandle(), [this] {
            m_services.timeline.mark("window-shown");
            m_services.telemetry.appLaunched();
            for (const QString& what : missingFonts())
                qWarning().noquote() << what;
        });
        m_services.player.setPlayerView(&m_playerWindow->containerView().playerView());
    }
    m_playerWindow->show();
    m_playerWindow->raise();
}

void AppDelegate::openSettings() {
    if (!m_settingsWindow)
        m_settingsWindow = std::make_unique<SettingsWindow>(
            settingsWindowCollaborators(m_services, [this](const QSizeF& size) {
                if (m_playerWindow)
                    m_playerWindow->setContentSize(size);
            }));
    bringToFront(*m_settingsWindow);
}

void AppDelegate::openAddChannel() {
    openSettings();
    m_settingsWindow->showCustomChannelsTab();
}

void AppDelegate::closePlayerWindow() {
    storeWindowFrame();
    m_services.player.stop();
    m_services.state.setCurrentChannel(std::nullopt);
    if (m_playerWindow)
        m_playerWindow->hide();
}

void AppDelegate::storeWindowFrame() {
    m_services.preferences.setWindowFrame(m_playerWindow ? std::optional(m_playerWindow->frame())
                                                         : std::nullopt);
}

void AppDelegate::playAtLaunch() {
    const Preferences& preferences = m_services.preferences;
    std::optional<Channel> channel;
    if (const auto lastId = preferences.lastChannelID();
        lastId && preferences.autoPlayLastChannel())
        channel = m_services.registry.channel(*lastId);
    if (!channel) {
        // Something always plays: a start without a picture is never what was wanted.
        const QList<Channel> featured = m_services.registry.featured();
        if (!featured.isEmpty())
            channel = featured.first();
    }
    if (channel)
        m_services.player.play(*channel);
}

void AppDelegate::playChannel(const QString& id) {
    if (const std::optional<Channel> channel = m_services.registry.channel(id))
        open(*channel);
}

void AppDelegate::open(const Channel& channel) {
    openPlayerWindow();
    m_services.player.play(channel);
}

void AppDelegate::menuChannelSelected(const QString& id) {
    const std::optional<Channel> channel = m_services.registry.channel(id);
    if (!channel)
        return;
    open(*channel);
    m_services.telemetry.channelPlayed(*channel);
}

void AppDelegate::menuResolutionSelected(const QString& text) {
    const auto resolution = fromRawValue<Resolution>(text);
    if (!resolution)
        return;
    m_services.state.setResolution(*resolution);
    m_services.player.retryCurrent();
    if (const auto& channel = m_services.state.currentChannel())
        m_services.telemetry.channelPlayed(*channel);
}

void AppDelegate::menuSleepTimer(int minutes) {
    m_services.sleepTimer.schedule(minutes);
}

void AppDelegate::menuCancelSleepTimer() {
    m_services.sleepTimer.cancel();
}

void AppDelegate::menuOpenSettings() {
    openSettings();
}

void AppDelegate::menuAddChannel() {
    openAddChannel();
}

void AppDelegate::menuShowAbout() {
    if (!m_aboutWindow)
        m_aboutWindow = std::make_unique<AboutWindow>();
    bringToFront(*m_aboutWindow);
}

void AppDelegate::menuToggleGhostMode() {
    m_services.state.setGhostMode(!m_services.state.isGhostMode());
}

void AppDelegate::menuCheckForUpdates() {
    m_updaterController.checkForUpdates();
}

QCoro::Task<> AppDelegate::prepareYtDlp() {
    m_services.ytDlp.onInstalling([this](bool isInstalling) {
        m_hasInstalledYtDlp = true;
        m_services.timeline.mark(isInstalling ? "installing" : "installed");
        m_playerWindow->containerView().setInstalling(isInstalling);
    });
    const YtDlpManager::Installed installed = co_await m_services.ytDlp.ensureInstalled();
    if (!installed || !m_hasInstalledYtDlp || m_isTerminating)
        co_return;
    // The channel may have failed already for want of the tool, or may be about to.
    m_isRetryDue = true;
    if (std::holds_alternative<PlaybackState::Error>(m_services.state.playbackState()))
        retryOnceAfterInstalling();
}

void AppDelegate::retryOnceAfterInstalling() {
    if (!m_isRetryDue)
        return;
    m_isRetryDue = false;
    // Later, so that everyone has heard of the error before they hear of the next attempt.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_isTerminating)
                m_services.player.retryCurrent();
        },
        Qt::QueuedConnection);
}

void AppDelegate::terminate() {
    if (m_isTerminating)
        return;
    m_isTerminating = true;
    Q_EMIT terminating();
    applicationWillTerminate();
    for (QWidget* window : QApplication::topLevelWidgets())
        window->hide();
    m_settingsWindow.reset();
    m_desktop.stop();
    m_updaterController.stop();
    m_services.ytDlp.stop();
    m_services.processes.shutDown();
    QTimer::singleShot(drainLimit, this, [] { QCoreApplication::exit(0); });
    drain();
}

void AppDelegate::applicationWillTerminate() {
    m_hotkeys.stop();
    m_services.player.stop();
    m_services.sleepTimer.cancel();
    if (m_playerWindow)
        storeWindowFrame();
}

QCoro::Task<> AppDelegate::drain() {
    co_await m_services.tasks.join();
    co_await m_services.teardown.empty();
    m_isDrained = true;
    QCoreApplication::exit(0);
}

} // namespace orvane
