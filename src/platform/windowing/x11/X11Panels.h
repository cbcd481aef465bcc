// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QRect>
#include <QSocketNotifier>
#include <QTimer>

#include <xcb/xcb.h>

#include <array>
#include <memory>
#include <vector>

namespace orvane {

/// The room that a panel claims along edges of the desktop, in the order of EWMH's
/// `_NET_WM_STRUT_PARTIAL`: the widths at the left, right, upper and lower edge, then the first and
/// the last pixel along each. Pixels.
using PanelRoom = std::array<int, 12>;

/// Returns what the panels leave of a screen of this desktop; pixels. One that claims the whole
/// screen, as it is on the one behind it, is passed over.
[[nodiscard]] QRect usableArea(const QRect& screen, QSize desktop,
                               const std::vector<PanelRoom>& panels);

/// The panels on an X11 desktop, by what they say themselves: not every window manager announces
/// the usable area, and none announces that of each screen. Owned by the usable areas; main thread.
/// Without panels the whole screen is usable.
class X11Panels final : public QObject {
    Q_OBJECT

public:
    X11Panels();
    ~X11Panels() override;

    [[nodiscard]] QRect usable(const QRect& screen) const;

Q_SIGNALS:
    void changed();

private:
    struct Close {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void receive();
    [[nodiscard]] static bool isOfInterest(const xcb_generic_event_t& event);
    void read();

    /// For events only: Qt's connection would receive the requests that this program sends to the
    /// window manager.
    std::unique_ptr<xcb_connection_t, Close> m_events;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::vector<PanelRoom> m_panels;
    /// From a change of windows until the panels are read again, as many change at a time.
    QTimer m_pause;
};

} // namespace orvane
