// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/tray/TrayWatcher.h"

#include <QIcon>
#include <QObject>

#include <functional>
#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace orvane {

class MenuFocus;
class UsableAreas;

/// The program's icon in the desktop's tray, with a menu that either mouse button opens. It appears
/// as soon as there is a tray, and again with a new one. Owned by the menu bar manager; main
/// thread. A desktop without a tray is not an error.
class StatusItem final : public QObject {
    Q_OBJECT

public:
    /// `fill` updates the given menu. It is called with an empty menu, and each time before the
    /// menu is shown.
    /// The bus outlives it.
    StatusItem(QIcon icon, QString toolTip, std::function<void(QMenu&)> fill,
               MessageBus& sessionBus);
    ~StatusItem() override;

    void rebuildMenu();
    void setToolTip(const QString& text);

    /// Calls back when the icon has appeared in a tray, and when the last tray has gone.
    void onShownChanged(std::function<void(bool)> callback) {
        m_onShownChanged = std::move(callback);
    }

    /// Whether there is a tray to show it.
    [[nodiscard]] bool isShown() const;

private:
    void show();
    [[nodiscard]] QPoint menuPlace();

    QIcon m_icon;
    QString m_toolTip;
    std::function<void(QMenu&)> m_fill;
    std::function<void(bool)> m_onShownChanged;
    TrayWatcher m_trays;
    // Declared in this order so that the icon is destroyed before its menu.
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<MenuFocus> m_menuFocus;
    /// Read anew for each tray, which is in a panel.
    std::unique_ptr<UsableAreas> m_usableAreas;
    std::unique_ptr<QSystemTrayIcon> m_trayIcon;
};

} // namespace orvane
