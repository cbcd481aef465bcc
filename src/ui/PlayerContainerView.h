// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Environment.h"
#include "platform/NotificationCenter.h"

#include <QWidget>

#include <vector>

namespace orvane {

class AppState;
class ControlBar;
class OverlayView;
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

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void registerObservers(NotificationCenter& notifications);

    PlayerManager& m_player;
    VideoView* m_playerView;
    OverlayView* m_overlayView;
    ControlBar* m_controlBar;
    std::vector<NotificationCenter::Token> m_observers;
};

} // namespace orvane
