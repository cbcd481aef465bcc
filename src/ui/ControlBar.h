// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/NotificationCenter.h"

#include <QString>
#include <QWidget>

#include <vector>

class QLabel;

namespace orvane {

class AppState;

/// The strip along the bottom of the player window, with the name of the current channel. Part of
/// the player window; main thread. It follows the application's state through notifications.
class ControlBar final : public QWidget {
    Q_OBJECT

public:
    ControlBar(AppState& state, NotificationCenter& notifications, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void updateChannel();
    void fitChannelName();

    AppState& m_state;
    QLabel* m_channelLabel;
    QString m_channelName;
    std::vector<NotificationCenter::Token> m_observers;
};

} // namespace orvane
