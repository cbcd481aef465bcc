// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/window/DialogLevel.h"

#include <QApplication>
#include <QEvent>
#include <QWindow>

namespace orvane {

DialogLevel::DialogLevel(QWidget& player) : QObject(&player), m_player(player) {
    qApp->installEventFilter(this);
}

bool DialogLevel::isDialog(const QWidget& window) const {
    const Qt::WindowType type = window.windowType();
    return &window != &m_player && (type == Qt::Window || type == Qt::Dialog);
}

bool DialogLevel::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::Show && type != QEvent::Hide && type != QEvent::Move &&
        type != QEvent::Resize)
        return false;
    auto* window = qobject_cast<QWidget*>(watched);
    if (window == nullptr || !window->isWindow())
        return false;
    if (isDialog(*window))
        apply(*window);
    else if (window == &m_player)
        applyToAll();
    return false;
}

void DialogLevel::applyToAll() const {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (isDialog(*window))
            apply(*window);
    }
}

void DialogLevel::apply(QWidget& dialog) const {
    QWindow* handle = dialog.windowHandle();
    if (handle == nullptr)
        return;
    const bool overlaps =
        m_player.isVisible() && m_player.geometry().intersects(dialog.frameGeometry());
    if (handle->flags().testFlag(Qt::WindowStaysOnTopHint) == overlaps)
        return;
    // The call of the widget would hide it.
    handle->setFlag(Qt::WindowStaysOnTopHint, overlaps);
    if (overlaps && dialog.isActiveWindow())
        dialog.raise();
}

} // namespace orvane
