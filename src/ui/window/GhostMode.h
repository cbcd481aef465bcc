// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QRectF>
#include <QTimer>

#include <memory>

namespace orvane {

class EventMonitor;

/// Makes a window vanish and let clicks through for as long as the pointer is over it. Owned by the
/// window; main thread. In a Wayland session the pointer is invisible over other programs' windows;
/// there it looks closer from time to time by taking the pointer for a moment.
class GhostMode final : public QObject {
    Q_OBJECT

public:
    /// What ghost mode does to its window.
    class Window {
    public:
        virtual ~Window() = default;

        /// Points in desktop coordinates, y downwards.
        [[nodiscard]] virtual QRectF frameOnScreen() const = 0;
        virtual void setIgnoresMouseEvents(bool ignores) = 0;
        /// Fades to nothing over `ghostFadeDuration`.
        virtual void fadeOut() = 0;
        /// Fades to the preferred opacity over `ghostFadeDuration`.
        virtual void fadeIn() = 0;
        /// Called now and then while the window is hidden: the desktop may have changed.
        virtual void keepHidden() = 0;
    };

    /// Milliseconds.
    static constexpr int ghostFadeDuration = 150;
    /// Points around the window in which the pointer still counts as over it, so that a window does
    /// not flicker under a pointer that rests on its edge.
    static constexpr double ghostPadding = 8;

    /// Both outlive it.
    GhostMode(Window& window, EventMonitor& events);
    ~GhostMode() override;

    void start();
    void stop();

    [[nodiscard]] bool isHiddenByGhost() const { return m_isHiddenByGhost; }

private:
    void checkMousePosition();
    void lookAgain();
    void lookCloser();
    void hide();
    void reveal();

    Window& m_window;
    EventMonitor& m_events;
    std::unique_ptr<QObject> m_globalMouseMonitor;
    std::unique_ptr<QObject> m_localMouseMonitor;
    bool m_isHiddenByGhost = false;
    /// Runs while the window is hidden.
    QTimer m_nextLook;
    /// Runs while the window takes the pointer to see whether it is still there.
    QTimer m_closerLook;
};

} // namespace orvane
