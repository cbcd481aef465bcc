// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppWindows.h"

#include "platform/media/VideoView.h"
#include "platform/windowing/FirstExposure.h"
#include "playback/PlayerManager.h"
#include "settings/Preferences.h"
#include "ui/player/PlayerContainerView.h"

#include <QApplication>
#include <QWindow>

#include <utility>

namespace orvane {

namespace {

/// Also restores a minimised window, and raises it above other programs' windows.
void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    // Qt 6.8 moves a dialog that is shown already to the middle of the screen.
    if (!window.isVisible())
        window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

AppWindows::AppWindows(const Collaborators& collaborators, ApplicationActions& actions,
                       std::function<Menu()> contextMenu)
    : m_with(collaborators), m_actions(actions), m_contextMenu(std::move(contextMenu)) {}

AppWindows::~AppWindows() = default;

void AppWindows::showPlayer() {
    if (!m_player)
        makePlayer();
    m_player->present();
}

void AppWindows::makePlayer() {
    m_player = m_with.makePlayerWindow(m_actions, m_contextMenu);
    m_player->winId(); // Creates the native window, which FirstExposure needs.
    new FirstExposure(m_player->windowHandle(), [this] {
        if (m_onPlayerExposed)
            m_onPlayerExposed();
    });
    m_with.player.setPlayerView(&m_player->containerView().playerView());
}

void AppWindows::closePlayer() {
    if (m_player)
        m_player->close();
}

void AppWindows::hidePlayer() {
    if (m_player)
        m_player->hide();
}

void AppWindows::setInstalling(bool isInstalling) {
    if (m_player)
        m_player->containerView().setInstalling(isInstalling);
}

void AppWindows::storePlayerFrame() {
    m_with.preferences.setWindowFrame(m_player ? std::optional(m_player->frame()) : std::nullopt);
}

void AppWindows::showSettings() {
    if (!m_settings)
        m_settings = m_with.makeSettingsWindow([this](const QSizeF& size) {
            if (m_player)
                m_player->setContentSize(size);
        });
    bringToFront(*m_settings);
}

void AppWindows::showAddChannel(const QString& text) {
    showSettings();
    m_settings->showCustomChannelsTab();
    if (!text.isEmpty())
        m_settings->resolveChannel(text);
}

void AppWindows::showAbout() {
    if (!m_about)
        m_about = std::make_unique<AboutWindow>();
    bringToFront(*m_about);
}

void AppWindows::hideAll() {
    for (QWidget* window : QApplication::topLevelWidgets())
        window->hide();
    // Cancels a lookup in the settings.
    m_settings.reset();
}

} // namespace orvane
