// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointF>

#include <functional>

class QMouseEvent;
class QWidget;

namespace orvane {

/// Lets a frameless window be resized by its edges and corners: the window manager does it. Owned
/// by the window; main thread. Every widget inside it is watched, so it has to be made after them,
/// and what happens on the edges never reaches them.
class EdgeResizer final : public QObject {
    Q_OBJECT

public:
    explicit EdgeResizer(QWidget* window);

    /// Called when a person is about to resize the window.
    void onResize(std::function<void()> callback) { m_onResize = std::move(callback); }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] Qt::Edges edgesUnder(const QMouseEvent& event) const;
    void showCursor(Qt::Edges edges);

    QWidget* m_window;
    Qt::Edges m_shown;
    std::function<void()> m_onResize;
};

} // namespace orvane
