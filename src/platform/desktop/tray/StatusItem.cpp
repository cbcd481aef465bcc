// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/tray/StatusItem.h"

#include "language/DirectedMenu.h"

#include "platform/desktop/tray/MenuFocus.h"
#include "platform/desktop/tray/PanelEnd.h"
#include "platform/windowing/UsableAreas.h"
#include "platform/windowing/x11/X11Geometry.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QSystemTrayIcon>

#include <utility>

namespace orvane {

StatusItem::StatusItem(QIcon icon, QString toolTip, std::function<void(QMenu&)> fill,
                       MessageBus& sessionBus)
    : m_icon(std::move(icon)),
      m_toolTip(std::move(toolTip)),
      m_fill(std::move(fill)),
      m_trays(sessionBus) {
    connect(&m_trays, &TrayWatcher::trayAppeared, this, &StatusItem::show);
    connect(&m_trays, &TrayWatcher::trayGone, this, [this] {
        if (m_onShownChanged)
            m_onShownChanged(false);
    });
}

StatusItem::~StatusItem() = default;

void StatusItem::show() {
    // A new one for each tray: Qt decides with its first icon which kind of tray there is, so none
    // may be created before there is one; and an icon that has lost its tray does not always find
    // the next one.
    m_trayIcon.reset();
    m_menuFocus.reset();
    m_menu = std::make_unique<DirectedMenu>();
    m_fill(*m_menu);
    connect(m_menu.get(), &QMenu::aboutToShow, this, &StatusItem::rebuildMenu);
    m_trayIcon = std::make_unique<QSystemTrayIcon>(m_icon);
    m_trayIcon->setToolTip(m_toolTip);
    m_trayIcon->setContextMenu(m_menu.get());
    // The right button opens the menu by itself.
    connect(m_trayIcon.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    m_menu->popup(menuPlace());
            });
    m_menuFocus = std::make_unique<MenuFocus>(*m_menu);
    m_usableAreas = std::make_unique<UsableAreas>();
    m_trayIcon->show();
    if (m_onShownChanged)
        m_onShownChanged(true);
}

QPoint StatusItem::menuPlace() {
    // Qt does not pass on where the panel says that the icon is.
    if (X11::isPointerKnown())
        return QCursor::pos();
    const QRectF screen = QGuiApplication::primaryScreen()->geometry();
    return panelEnd(screen, m_usableAreas->read().first()).value_or(QCursor::pos());
}

void StatusItem::rebuildMenu() {
    if (m_menu)
        m_fill(*m_menu);
}

void StatusItem::setToolTip(const QString& text) {
    m_toolTip = text;
    if (m_trayIcon)
        m_trayIcon->setToolTip(text);
}

bool StatusItem::isShown() const {
    return m_trayIcon && m_trays.hasTray();
}

} // namespace orvane
