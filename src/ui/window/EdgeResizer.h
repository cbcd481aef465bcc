// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>

#include <functional>

class QMouseEvent;
class QWidget;

namespace orvane {

/// Lets the window manager resize a frameless window by its edges and corners. Owned by the window;
/// main thread. Create it after all child widgets: it filters their events, and they never receive
/// presses on the edges.
class EdgeResizer final : public QObject {
    Q_OBJECT

public:
    explicit EdgeResizer(QWidget* window);

    /// Sets the callback for when the user starts to resize the window.
    void onResize(std::function<void()> callback) { m_onResize = std::move(callback); }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] Qt::Edges edgesUnder(const QMouseEvent& event) const;
    void showCursor(Qt::Edges edges);

    QWidget* m_window;
    Qt::Edges m_cursorEdges;
    std::function<void()> m_onResize;
};

} // namespace orvane
