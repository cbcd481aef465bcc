// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/PlayerContainerView.h"

#include "language/Mirror.h"

#include "model/AppConstants.h"
#include "platform/media/VideoView.h"
#include "playback/PlayerCommands.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "streaming/ladder/StreamFailure.h"
#include "ui/DisplayText.h"
#include "ui/player/CloseButton.h"
#include "ui/player/ControlBar.h"
#include "ui/window/WindowDrag.h"

#include <QGraphicsOpacityEffect>
#include <QMouseEvent>

#include <chrono>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds hideDelay{3000};
constexpr int showFadeDuration = 200;
constexpr int hideFadeDuration = 400;
constexpr QRect closeButtonFrame(10, 10, 18, 18);

} // namespace

PlayerContainerView::PlayerContainerView(AppState& state, PlayerCommands& player,
                                         ApplicationActions& actions,
                                         NotificationCenter& notifications, VideoOutput output,
                                         QWidget* parent)
    : QWidget(parent),
      m_player(player),
      m_playerView(new VideoView(output, this)),
      m_dragOverlay(new QWidget(this)),
      m_overlayView(new OverlayView(this)),
      m_controlBar(new ControlBar(state, player, actions, notifications, this)),
      m_closeButton(new CloseButton(this)),
      m_controlBarOpacity(new QGraphicsOpacityEffect(m_controlBar)) {
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);
    setAutoFillBackground(true);

    m_overlayView->onRetry([this] { m_player.retryCurrent(); });
    connect(m_closeButton, &QAbstractButton::clicked, this, [this] { window()->close(); });

    // Enabled only while it fades: an effect makes every repaint slower.
    m_controlBarOpacity->setOpacity(1);
    m_controlBarOpacity->setEnabled(false);
    m_controlBar->setGraphicsEffect(m_controlBarOpacity);
    connect(&m_controlBarFade, &QVariantAnimation::valueChanged, m_controlBarOpacity,
            [this](const QVariant& value) { m_controlBarOpacity->setOpacity(value.toDouble()); });
    connect(&m_controlBarFade, &QVariantAnimation::finished, this, [this] {
        m_controlBarOpacity->setEnabled(false);
        m_controlBar->setVisible(m_controlBarVisible);
    });
    m_hideTimer.setInterval(hideDelay);
    m_hideTimer.setSingleShot(true);
    connect(&m_hideTimer, &QTimer::timeout, this, &PlayerContainerView::hideControlBar);

    setUpDragging(notifications);
    m_player.setPlayerView(m_playerView);
    registerObservers(notifications);
}

PlayerContainerView::~PlayerContainerView() {
    m_player.setPlayerView(nullptr);
}

void PlayerContainerView::setUpDragging(NotificationCenter& notifications) {
    for (QWidget* surface : {m_dragOverlay, static_cast<QWidget*>(m_overlayView)}) {
        auto* drag = new WindowDrag(surface);
        drag->onDoubleClick(
            [&notifications] { notifications.post(AppNotification::toggleFullscreen); });
    }
    for (QWidget* widget : findChildren<QWidget*>()) {
        widget->setMouseTracking(true);
        widget->installEventFilter(this);
    }
}

void PlayerContainerView::setInstalling(bool isInstalling) {
    m_isInstalling = isInstalling;
    updateOverlay();
}

void PlayerContainerView::setStreamState(OverlayView::State state) {
    m_streamState = std::move(state);
    updateOverlay();
}

void PlayerContainerView::updateOverlay() {
    const bool isPlaying = std::holds_alternative<OverlayView::Hidden>(m_streamState);
    if (m_isInstalling && !isPlaying)
        m_overlayView->setState(OverlayView::Loading{translated("Player", "Installing yt-dlp...")});
    else
        m_overlayView->setState(m_streamState);
}

void PlayerContainerView::registerObservers(NotificationCenter& notifications) {
    m_observers.push_back(
        notifications.addObserver(AppNotification::streamLoading, [this](const Channel& channel) {
            const QString name = singleLineName(channel.displayName());
            setStreamState(OverlayView::Loading{translated("Player", "Loading %1...").arg(name)});
        }));
    m_observers.push_back(notifications.addObserver(
        AppNotification::streamResolved, [this] { setStreamState(OverlayView::Hidden{}); }));
    m_observers.push_back(
        notifications.addObserver(AppNotification::streamError, [this](const QString& message) {
            setStreamState(
                OverlayView::Error{.message = messageFor(message), .details = detailsFor(message)});
        }));
    m_observers.push_back(notifications.addObserver(
        AppNotification::retryCountdown,
        [this](std::optional<std::chrono::seconds> left) { m_overlayView->setCountdown(left); }));
}

void PlayerContainerView::resizeEvent(QResizeEvent*) {
    constexpr int barHeight = static_cast<int>(AppConstants::controlBarHeight);
    m_playerView->setGeometry(rect());
    m_dragOverlay->setGeometry(0, 0, width(), height() - barHeight);
    m_overlayView->setGeometry(rect());
    m_controlBar->setGeometry(0, height() - barHeight, width(), barHeight);
    m_closeButton->setGeometry(mirrored(closeButtonFrame, width()));
}

// A pointer movement stops the hide timer of a visible bar without restarting it, so the bar stays
// while the pointer is inside. Only a bar that was just shown hides by itself if no other movement
// follows. In full screen the pointer is always inside, so there each movement restarts the timer.

void PlayerContainerView::pointerMoved(const QPointF& position) {
    if (position == m_lastPointer)
        return;
    m_lastPointer = position;
    m_hideTimer.stop();
    const bool wasVisible = m_controlBarVisible;
    if (!wasVisible)
        showControlBar();
    if (!wasVisible || window()->isFullScreen())
        scheduleHide();
}

void PlayerContainerView::scheduleHide() {
    m_hideTimer.start();
}

void PlayerContainerView::showControlBar() {
    m_controlBarVisible = true;
    updateFullScreenParts();
    m_controlBar->show();
    fadeControlBar(1, showFadeDuration);
}

void PlayerContainerView::hideControlBar() {
    if (!m_controlBarVisible)
        return;
    m_controlBarVisible = false;
    updateFullScreenParts();
    fadeControlBar(0, hideFadeDuration);
}

void PlayerContainerView::fullScreenChanged() {
    updateFullScreenParts();
    if (window()->isFullScreen() && m_controlBarVisible)
        scheduleHide();
    else if (m_controlBarVisible)
        m_hideTimer.stop();
}

void PlayerContainerView::updateFullScreenParts() {
    const bool areHidden = window()->isFullScreen() && !m_controlBarVisible;
    m_closeButton->setHidden(areHidden);
    if (areHidden)
        setCursor(Qt::BlankCursor);
    else
        unsetCursor();
}

void PlayerContainerView::fadeControlBar(double opacity, int milliseconds) {
    m_controlBarFade.stop();
    m_controlBarFade.setStartValue(m_controlBarOpacity->opacity());
    m_controlBarFade.setEndValue(opacity);
    m_controlBarFade.setDuration(milliseconds);
    m_controlBarOpacity->setEnabled(true);
    m_controlBarFade.start();
}

bool PlayerContainerView::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::MouseMove)
        return false;
    // An ignored event is passed on to the parent widget, too.
    pointerMoved(static_cast<const QMouseEvent*>(event)->globalPosition());
    return false;
}

void PlayerContainerView::enterEvent(QEnterEvent* event) {
    pointerMoved(event->globalPosition());
}

void PlayerContainerView::leaveEvent(QEvent*) {
    m_lastPointer.reset();
    hideControlBar();
}

} // namespace orvane
