// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/PlayerWindow.h"

#include "model/AppConstants.h"
#include "model/AppNotification.h"
#include "settings/Preferences.h"
#include "ui/PlayerContainerView.h"
#include "ui/WindowGeometry.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>

namespace orvane {

namespace {

constexpr QSize minimumWindowSize(320, 180);

} // namespace

PlayerWindow::PlayerWindow(Preferences& preferences, AppState& state, PlayerManager& player,
                           NotificationCenter& notifications, VideoOutput output)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_notifications(notifications),
      m_containerView(new PlayerContainerView(state, player, notifications, output, this)) {
    setWindowTitle(AppConstants::appName);
    setMinimumSize(minimumWindowSize);
    setWindowOpacity(preferences.windowOpacity());
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRectF usable = screen != nullptr ? screen->availableGeometry() : QRect();
    setGeometry(initialPlayerFrame(preferences.windowFrame(), usable).toRect());
}

QRectF PlayerWindow::frame() const {
    return geometry();
}

void PlayerWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    m_notifications.post(AppNotification::closePlayer);
}

void PlayerWindow::resizeEvent(QResizeEvent*) {
    m_containerView->setGeometry(rect());
}

} // namespace orvane
