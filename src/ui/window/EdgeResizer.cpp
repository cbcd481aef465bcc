// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/EdgeResizer.h"

#include "ui/window/WindowGeometry.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace orvane {

namespace {

Qt::CursorShape cursorFor(Qt::Edges edges) {
    switch (edges) {
    case Qt::TopEdge:
    case Qt::BottomEdge:
        return Qt::SizeVerCursor;
    case Qt::LeftEdge:
    case Qt::RightEdge:
        return Qt::SizeHorCursor;
    case int(Qt::TopEdge) | int(Qt::LeftEdge):
    case int(Qt::BottomEdge) | int(Qt::RightEdge):
        return Qt::SizeFDiagCursor;
    default:
        return Qt::SizeBDiagCursor;
    }
}

} // namespace

EdgeResizer::EdgeResizer(QWidget* window) : QObject(window), m_window(window) {
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        widget->setMouseTracking(true);
        widget->installEventFilter(this);
    }
}

Qt::Edges EdgeResizer::edgesUnder(const QMouseEvent& event) const {
    if (m_window->isFullScreen())
        return {};
    const QPointF position = m_window->mapFromGlobal(event.globalPosition());
    return edgesAt(position, m_window->size());
}

void EdgeResizer::showCursor(Qt::Edges edges) {
    if (edges == m_cursorEdges)
        return;
    m_cursorEdges = edges;
    if (edges)
        m_window->setCursor(cursorFor(edges));
    else
        m_window->unsetCursor();
}

bool EdgeResizer::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::MouseMove) {
        const auto& move = static_cast<const QMouseEvent&>(*event);
        if (move.buttons() == Qt::NoButton)
            showCursor(edgesUnder(move));
        return false;
    }
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonDblClick)
        return false;
    const auto& press = static_cast<const QMouseEvent&>(*event);
    const Qt::Edges edges = edgesUnder(press);
    if (!edges || press.button() != Qt::LeftButton)
        return false;
    if (m_onResize)
        m_onResize();
    m_window->windowHandle()->startSystemResize(edges);
    return true;
}

} // namespace orvane
