// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QTimer>

#include <functional>
#include <optional>

class QMouseEvent;
class QWidget;

namespace orvane {

/// Lets the user resize the frameless player window by its edges and corners. The window manager
/// does it, or this class where that offers none; either way the window is 16:9 in the end. Owned
/// by the window; main thread. Create it after all child widgets: it filters their events, and they
/// never receive presses on the edges.
class EdgeResizer final : public QObject {
    Q_OBJECT

public:
    /// `setFrame` gives the window another frame, in points.
    EdgeResizer(QWidget* window, std::function<void(QRectF)> setFrame);

    /// Sets the callback for when the user starts to resize the window.
    void onResize(std::function<void()> callback) { m_onResize = std::move(callback); }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] Qt::Edges edgesUnder(const QMouseEvent& event) const;
    void showCursor(Qt::Edges edges);
    void press(Qt::Edges edges, const QPointF& position);
    void finish();
    void correctShape();

    QWidget* m_window;
    Qt::Edges m_cursorEdges;
    /// The edges that are being dragged.
    Qt::Edges m_edges;
    /// Where the pointer and the window were at the press, while this class resizes the window.
    struct Start {
        QPointF pointer;
        QRectF frame;
    };
    std::optional<Start> m_start;
    /// Runs while the window manager resizes the window.
    QTimer m_pause;
    std::function<void(QRectF)> m_setFrame;
    std::function<void()> m_onResize;
};

} // namespace orvane
