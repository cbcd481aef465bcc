// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/WindowMove.h"

#include <QObject>
#include <QPointF>

#include <functional>
#include <memory>
#include <optional>

class QMouseEvent;
class QWidget;

namespace orvane {

/// Lets the user move the window by dragging one of its widgets. The window manager does the move,
/// or this class where that offers none. Owned by the widget; main thread. Children that handle
/// mouse events themselves are not affected.
class WindowDrag final : public QObject {
    Q_OBJECT

public:
    explicit WindowDrag(QWidget* handle);

    /// Sets the callback for a double click.
    void onDoubleClick(std::function<void()> callback) { m_onDoubleClick = std::move(callback); }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void started();

private:
    void press(const QMouseEvent& event);
    void move(const QMouseEvent& event);

    QWidget* m_handle;
    std::optional<QPointF> m_pressedAt;
    /// While no window manager moves the window.
    std::unique_ptr<WindowMove> m_move;
    std::function<void()> m_onDoubleClick;
};

} // namespace orvane
