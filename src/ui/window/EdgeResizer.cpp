// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/EdgeResizer.h"

#include "ui/window/WindowGeometry.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

#include <chrono>
#include <cmath>

namespace orvane {

namespace {

constexpr std::chrono::milliseconds pauseTime{300};
/// Points by which window managers may miss the aspect ratio.
constexpr double tolerance = 2;

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

EdgeResizer::EdgeResizer(QWidget* window, std::function<void(QRectF)> setFrame)
    : QObject(window), m_window(window), m_setFrame(std::move(setFrame)) {
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseTime);
    connect(&m_pause, &QTimer::timeout, this, &EdgeResizer::correctShape);
    window->installEventFilter(this);
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

bool EdgeResizer::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Resize:
        // Some window managers tell of the end of a resize only when the pointer moves again.
        if (watched == m_window && m_edges && !m_start)
            m_pause.start();
        return false;
    case QEvent::MouseMove: {
        const auto& move = static_cast<const QMouseEvent&>(*event);
        if (move.buttons() == Qt::NoButton) {
            finish(); // A window manager may keep the release to itself.
            showCursor(edgesUnder(move));
        } else if (m_start) {
            m_setFrame(playerFrameDragged(m_start->frame, m_edges,
                                          move.globalPosition() - m_start->pointer));
        }
        return m_start.has_value();
    }
    case QEvent::MouseButtonRelease: {
        const bool isOurs = static_cast<bool>(m_edges);
        finish();
        return isOurs;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        const auto& pressed = static_cast<const QMouseEvent&>(*event);
        const Qt::Edges edges = edgesUnder(pressed);
        if (!edges || pressed.button() != Qt::LeftButton)
            return false;
        press(edges, pressed.globalPosition());
        return true;
    }
    default:
        return false;
    }
}

void EdgeResizer::press(Qt::Edges edges, const QPointF& position) {
    if (m_onResize)
        m_onResize();
    m_edges = edges;
    if (!m_window->windowHandle()->startSystemResize(edges))
        m_start = Start{.pointer = position, .frame = m_window->geometry()};
}

void EdgeResizer::finish() {
    if (!m_edges)
        return;
    correctShape();
    m_pause.stop();
    m_edges = {};
    m_start.reset();
}

void EdgeResizer::correctShape() {
    // Not every window manager keeps to the aspect ratio that the window's hints ask for.
    const QRectF now = m_window->geometry();
    const QRectF wanted = playerFrameDragged(now, m_edges, {});
    const bool isClose = std::abs(now.width() - wanted.width()) <= tolerance &&
                         std::abs(now.height() - wanted.height()) <= tolerance;
    if (!isClose && !m_window->isFullScreen())
        m_setFrame(wanted);
}

} // namespace orvane
