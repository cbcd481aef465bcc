// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Environment.h"

#include <QRectF>
#include <QWidget>

namespace orvane {

class AppState;
class NotificationCenter;
class PlayerContainerView;
class PlayerManager;
class Preferences;

/// The small floating window that shows the channel. Created by the application controller on first
/// need and kept; main thread. Closing it only announces the wish: the controller acts on it.
class PlayerWindow final : public QWidget {
    Q_OBJECT

public:
    PlayerWindow(Preferences& preferences, AppState& state, PlayerManager& player,
                 NotificationCenter& notifications, VideoOutput output);

    [[nodiscard]] PlayerContainerView& containerView() const { return *m_containerView; }

    /// Points in desktop coordinates, y downwards.
    [[nodiscard]] QRectF frame() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    NotificationCenter& m_notifications;
    PlayerContainerView* m_containerView;
};

} // namespace orvane
