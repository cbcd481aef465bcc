// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/NotificationCenter.h"

#include <QString>
#include <QWidget>

#include <vector>

class QLabel;

namespace orvane {

class AppState;
class ApplicationActions;
class GlyphButton;
class GoLiveButton;
class LiveIndicator;
class PlayerCommands;

/// The strip along the bottom of the player window: a live dot, how far behind live the picture is,
/// the name of the current channel and five buttons. Part of the player window; main thread. It
/// shows `AppState`, which it follows through notifications, and has no state of its own.
class ControlBar final : public QWidget {
    Q_OBJECT

public:
    ControlBar(AppState& state, PlayerCommands& player, ApplicationActions& actions,
               NotificationCenter& notifications, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void setUpLabel();
    void setUpButtons();
    void registerObservers();
    void updateChannel();
    void updateMuteButton();
    void updateGhostButton();
    void updateLivePosition();
    void layOut();
    void fitChannelName();

    AppState& m_state;
    PlayerCommands& m_player;
    ApplicationActions& m_actions;
    NotificationCenter& m_notifications;
    LiveIndicator* m_liveIndicator;
    GoLiveButton* m_goLiveButton;
    QLabel* m_channelLabel;
    GlyphButton* m_muteButton;
    GlyphButton* m_ghostButton;
    GlyphButton* m_fullscreenBtn;
    GlyphButton* m_closeButton;
    GlyphButton* m_quitButton;
    QString m_channelName;
    std::vector<NotificationCenter::Token> m_observers;
};

} // namespace orvane
