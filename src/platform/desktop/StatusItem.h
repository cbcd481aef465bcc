// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/TrayWatcher.h"

#include <QIcon>
#include <QObject>

#include <functional>
#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace orvane {

/// The program's icon in the desktop's tray, with a menu that opens on either button. It comes as
/// soon as there is a tray, and comes back with it. Owned by the menus' manager; main thread. On a
/// desktop without a tray it is nowhere, which is no error.
class StatusItem final : public QObject {
    Q_OBJECT

public:
    /// `fill` brings the menu it is given up to date. It is called with an empty one, and whenever
    /// one is about to be shown.
    StatusItem(QIcon icon, QString toolTip, std::function<void(QMenu&)> fill);
    ~StatusItem() override;

    void rebuildMenu();

    /// Whether there is a tray to show it.
    [[nodiscard]] bool isShown() const;

private:
    void show();

    QIcon m_icon;
    QString m_toolTip;
    std::function<void(QMenu&)> m_fill;
    TrayWatcher m_trays;
    // The icon goes before the menu that it shows.
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_trayIcon;
};

} // namespace orvane
