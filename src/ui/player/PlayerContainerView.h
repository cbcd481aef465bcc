// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"
#include "platform/media/view/VideoOutput.h"
#include "ui/player/OverlayView.h"

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

#include <optional>
#include <vector>

class QGraphicsOpacityEffect;

namespace orvane {

class AppState;
class ApplicationActions;
class CloseButton;
class ControlBar;
class PlayerCommands;
class VideoView;

/// The content of the player window: the video, the overlay above it, the control bar along the
/// bottom, which is shown and hidden with the pointer, and the window's close button. Owned by the
/// window; main thread. It follows the notifications about the stream.
class PlayerContainerView final : public QWidget {
    Q_OBJECT

public:
    PlayerContainerView(AppState& state, PlayerCommands& player, ApplicationActions& actions,
                        NotificationCenter& notifications, VideoOutput output,
                        QWidget* parent = nullptr);
    ~PlayerContainerView() override;

    [[nodiscard]] VideoView& playerView() const { return *m_playerView; }

    /// While yt-dlp is being installed, the overlay says so instead of showing the stream's state;
    /// a failure to resolve is expected meanwhile and is shown afterwards.
    void setInstalling(bool isInstalling);

    /// To be called when full screen begins or ends. In full screen the bar, the close button and
    /// the pointer disappear together some time after the last movement.
    void fullScreenChanged();

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void setUpDragging(NotificationCenter& notifications);
    void registerObservers(NotificationCenter& notifications);
    void setStreamState(OverlayView::State state);
    void updateOverlay();
    void pointerMoved(const QPointF& position);
    void scheduleHide();
    void showControlBar();
    void hideControlBar();
    void updateFullScreenParts();
    void fadeControlBar(double opacity, int milliseconds);

    PlayerCommands& m_player;
    VideoView* m_playerView;
    /// Transparent; takes the mouse events over the video.
    QWidget* m_dragOverlay;
    OverlayView* m_overlayView;
    ControlBar* m_controlBar;
    CloseButton* m_closeButton;
    QGraphicsOpacityEffect* m_controlBarOpacity;
    QVariantAnimation m_controlBarFade;
    QTimer m_hideTimer{this};
    bool m_controlBarVisible = true;
    /// On the screen, while it is inside. One movement may be reported more than once, and Qt
    /// reports one when what is under a resting pointer is hidden.
    std::optional<QPointF> m_lastPointer;
    OverlayView::State m_streamState = OverlayView::Hidden{};
    bool m_isInstalling = false;
    std::vector<NotificationCenter::Token> m_observers;
};

} // namespace orvane
