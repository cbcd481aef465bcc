// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/tray/MenuFocus.h"

#include "platform/windowing/x11/X11.h"

#include <QEvent>

namespace orvane {

MenuFocus::MenuFocus(QMenu& menu) : m_menu(menu) {
    if (!X11::isXWayland())
        return;
    connect(&m_menu, &QMenu::aboutToShow, this, &MenuFocus::take);
    connect(&m_menu, &QMenu::aboutToHide, this, &MenuFocus::release);
}

MenuFocus::~MenuFocus() = default;

void MenuFocus::take() {
    m_holder = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::FramelessWindowHint |
                                                      Qt::WindowStaysOnTopHint);
    m_holder->setAttribute(Qt::WA_TranslucentBackground);
    m_holder->installEventFilter(this);
    m_holder->resize(1, 1);
    m_holder->show();
    m_holder->activateWindow();
}

void MenuFocus::release() {
    if (m_holder)
        m_holder.release()->deleteLater();
}

bool MenuFocus::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate)
        m_menu.close();
    return false;
}

} // namespace orvane
