// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QRectF>
#include <QTimer>

#include <memory>

namespace orvane {

class EventMonitor;

/// Hides a window and lets clicks through while the pointer is over it. Owned by the window; main
/// thread. In a Wayland session the position of the pointer is unknown over other programs'
/// windows; there it waits for the pointer around the window.
class GhostMode final : public QObject {
    Q_OBJECT

public:
    /// The operations that ghost mode needs of its window.
    class Window {
    public:
        virtual ~Window() = default;

        /// Points in desktop coordinates, y downwards.
        [[nodiscard]] virtual QRectF frameOnScreen() const = 0;
        virtual void setIgnoresMouseEvents(bool ignores) = 0;
        /// Fades out over `ghostFadeDuration`.
        virtual void fadeOut() = 0;
        /// Fades to the preferred opacity over `ghostFadeDuration`.
        virtual void fadeIn() = 0;
        /// Called repeatedly while the window is hidden, as the desktop may have changed.
        virtual void keepHidden() = 0;
    };

    /// Milliseconds.
    static constexpr int ghostFadeDuration = 150;
    /// The margin in points in which the pointer still counts as over the window, so that the
    /// window does not flicker under a pointer on its edge.
    static constexpr double ghostPadding = 8;

    /// Both outlive this object.
    GhostMode(Window& window, EventMonitor& events);
    ~GhostMode() override;

    void start();
    void stop();

    [[nodiscard]] bool isHiddenByGhost() const { return m_isHiddenByGhost; }

private:
    void checkMousePosition();
    void poll();
    [[nodiscard]] QRectF paddedFrame() const;
    void awaitDeparture();
    void hide();
    void reveal();

    Window& m_window;
    EventMonitor& m_events;
    std::unique_ptr<QObject> m_globalMouseMonitor;
    std::unique_ptr<QObject> m_localMouseMonitor;
    bool m_isHiddenByGhost = false;
    /// Runs while the window is hidden.
    QTimer m_pollTimer;
    /// While the window is hidden, with the area that the pointer has to leave.
    std::unique_ptr<QObject> m_departureMonitor;
    QRectF m_departureArea;
};

} // namespace orvane
