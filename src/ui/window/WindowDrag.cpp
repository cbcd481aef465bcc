// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/WindowDrag.h"

#include "platform/windowing/FloatingWindowFactory.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWidget>

#include <utility>

namespace orvane {

WindowDrag::WindowDrag(QWidget* handle) : QObject(handle), m_handle(handle) {
    handle->installEventFilter(this);
}

bool WindowDrag::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        press(static_cast<const QMouseEvent&>(*event));
        return true;
    case QEvent::MouseButtonDblClick:
        m_pressedAt.reset();
        if (static_cast<const QMouseEvent*>(event)->button() == Qt::LeftButton && m_onDoubleClick)
            m_onDoubleClick();
        return true;
    case QEvent::MouseMove:
        move(static_cast<const QMouseEvent&>(*event));
        return true;
    case QEvent::MouseButtonRelease:
        m_pressedAt.reset();
        m_move.reset();
        return true;
    default:
        return false;
    }
}

void WindowDrag::press(const QMouseEvent& event) {
    m_pressedAt.reset();
    m_move.reset();
    if (event.button() == Qt::LeftButton)
        m_pressedAt = event.scenePosition();
}

void WindowDrag::move(const QMouseEvent& event) {
    if (!event.buttons().testFlag(Qt::LeftButton))
        return;
    QWidget* window = m_handle->window();
    if (m_move)
        m_move->follow();
    if (!m_pressedAt)
        return;
    // Not on the press itself: a window manager that moves a window consumes the release, and a
    // double click would no longer be recognised.
    const QPointF now = event.scenePosition();
    const QPointF distance = now - *m_pressedAt;
    if (distance.manhattanLength() < QGuiApplication::styleHints()->startDragDistance())
        return;
    const QPointF pressed = *m_pressedAt;
    m_pressedAt.reset();
    if (window->isFullScreen())
        return;
    Q_EMIT started();
    m_move = startWindowMove(*window, pressed, now);
}

} // namespace orvane
