// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Environment.h"
#include "platform/NotificationCenter.h"
#include "ui/OverlayView.h"

#include <QWidget>

#include <vector>

namespace orvane {

class AppState;
class ControlBar;
class PlayerManager;
class VideoView;

/// The content of the player window: the picture, the overlay above it, and the control bar along
/// the bottom. Owned by the window; main thread. It shows what the notifications about the stream
/// say and asks the player manager for another try.
class PlayerContainerView final : public QWidget {
    Q_OBJECT

public:
    PlayerContainerView(AppState& state, PlayerManager& player, NotificationCenter& notifications,
                        VideoOutput output, QWidget* parent = nullptr);
    ~PlayerContainerView() override;

    [[nodiscard]] VideoView& playerView() const { return *m_playerView; }

    /// While yt-dlp is being installed the overlay says so: what the stream has to say meanwhile,
    /// that it cannot be had, is no news. It is shown when the installation has ended.
    void setInstalling(bool isInstalling);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void registerObservers(NotificationCenter& notifications);
    void setStreamState(OverlayView::State state);
    void updateOverlay();

    PlayerManager& m_player;
    VideoView* m_playerView;
    OverlayView* m_overlayView;
    ControlBar* m_controlBar;
    OverlayView::State m_streamState = OverlayView::Hidden{};
    bool m_isInstalling = false;
    std::vector<NotificationCenter::Token> m_observers;
};

} // namespace orvane
