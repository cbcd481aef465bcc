// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/sway/SwaySocket.h"

#include <QList>
#include <QObject>
#include <QRect>
#include <QTimer>

namespace orvane {

/// What sway's panels leave of the screens, of which it tells no X11 program: asks for its
/// workspaces, again and again, as it tells nobody of a panel that comes or goes. Owned by the
/// usable areas; main thread, which it never blocks. Empty while sway has not answered.
class SwayWorkspaces final : public QObject {
    Q_OBJECT

public:
    SwayWorkspaces();

    /// Whether it asks again and again; off at first.
    void setWatched(bool isWatched);

    /// Pixels; one for each screen.
    [[nodiscard]] const QList<QRect>& visible() const { return m_visible; }

Q_SIGNALS:
    void changed();

private:
    void ask();
    void answered(SwaySocket::Kind kind, const QByteArray& payload);

    SwaySocket m_sway;
    bool m_isWatched = false;
    QTimer m_next;
    QList<QRect> m_visible;
};

} // namespace orvane
