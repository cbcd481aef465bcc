// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/PlayerContainerView.h"

#include "model/AppConstants.h"
#include "model/AppNotification.h"
#include "model/AppState.h"
#include "platform/VideoView.h"
#include "playback/PlayerManager.h"
#include "ui/ControlBar.h"

namespace orvane {

using namespace Qt::StringLiterals;

PlayerContainerView::PlayerContainerView(AppState& state, PlayerManager& player,
                                         NotificationCenter& notifications, VideoOutput output,
                                         QWidget* parent)
    : QWidget(parent),
      m_player(player),
      m_playerView(new VideoView(output, this)),
      m_overlayView(new OverlayView(this)),
      m_controlBar(new ControlBar(state, notifications, this)) {
    QPalette black = palette();
    black.setColor(QPalette::Window, Qt::black);
    setPalette(black);
    setAutoFillBackground(true);

    m_overlayView->onRetry([this, &state] {
        // A copy: the replay assigns the current channel while it reads this one.
        if (const std::optional<Channel> channel = state.currentChannel())
            m_player.retry(*channel);
    });
    m_player.setPlayerView(m_playerView);
    registerObservers(notifications);
}

PlayerContainerView::~PlayerContainerView() {
    m_player.setPlayerView(nullptr);
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
        m_overlayView->setState(OverlayView::Loading{u"Installing yt-dlp..."_s});
    else
        m_overlayView->setState(m_streamState);
}

void PlayerContainerView::registerObservers(NotificationCenter& notifications) {
    m_observers.push_back(notifications.addObserver(
        AppNotification::streamLoading, [this](const NotificationCenter::Notification& n) {
            const auto* channel = std::any_cast<Channel>(&n.object);
            const QString name = channel != nullptr ? channel->displayName() : QString();
            setStreamState(OverlayView::Loading{u"Loading "_s + name + u"..."_s});
        }));
    m_observers.push_back(
        notifications.addObserver(AppNotification::streamResolved,
                                  [this](const auto&) { setStreamState(OverlayView::Hidden{}); }));
    m_observers.push_back(notifications.addObserver(
        AppNotification::streamError, [this](const NotificationCenter::Notification& n) {
            const auto* message = std::any_cast<QString>(&n.object);
            setStreamState(
                OverlayView::Error{message != nullptr ? *message : u"Stream unavailable"_s});
        }));
}

void PlayerContainerView::resizeEvent(QResizeEvent*) {
    constexpr int barHeight = static_cast<int>(AppConstants::controlBarHeight);
    m_playerView->setGeometry(rect());
    m_overlayView->setGeometry(rect());
    m_controlBar->setGeometry(0, height() - barHeight, width(), barHeight);
}

} // namespace orvane
