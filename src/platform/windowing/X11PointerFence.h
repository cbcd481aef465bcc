// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QRectF>

#include <xcb/xcb.h>

#include <functional>
#include <vector>

namespace orvane {

/// Notices a pointer that is outside an area in a Wayland session, where XWayland is told of it
/// only over its own windows: covers the rest of the desktop with invisible windows until one of
/// them is entered. They are plain rectangles, as not every compositor heeds input shapes. Owned by
/// whoever waits; main thread.
class X11PointerFence final : public QObject, QAbstractNativeEventFilter {
    Q_OBJECT

public:
    /// `area` in points.
    explicit X11PointerFence(const QRectF& area);
    ~X11PointerFence() override;

Q_SIGNALS:
    /// Emitted once from the event loop; the windows are gone by then.
    void entered();

private:
    void build();
    void remove();
    void addWindow(const QRect& frame);
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override;

    QRectF m_area;
    xcb_colormap_t m_colormap = XCB_NONE;
    std::vector<xcb_window_t> m_windows;
};

} // namespace orvane
