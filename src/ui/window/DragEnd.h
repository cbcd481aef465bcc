// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QRectF>
#include <QTimer>

namespace orvane {

class FloatingWindow;

/// Waits until the user has finished dragging a window, of which window managers do not tell: until
/// the button is released and the window has been still for a moment, as a window manager on a busy
/// machine follows the pointer late. Owned by the window; main thread.
class DragEnd final : public QObject {
    Q_OBJECT

public:
    /// `window` outlives this.
    explicit DragEnd(const FloatingWindow& window);

    /// Begins to wait if the window may be being dragged.
    void start();
    [[nodiscard]] bool isWaiting() const { return m_poll.isActive(); }

Q_SIGNALS:
    void over();

private:
    void poll();

    const FloatingWindow& m_window;
    QTimer m_poll;
    QRectF m_last;
    int m_stillPolls = 0;
};

} // namespace orvane
