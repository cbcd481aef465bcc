// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMenu>
#include <QObject>
#include <QWidget>

#include <memory>

namespace orvane {

/// Gives the menu of a tray icon the keyboard in a Wayland session, where a menu alone gets neither
/// keys nor the news of a click elsewhere: while it is open, a window that nobody sees has the
/// focus, and the menu closes when that loses it. Owned by the status item; main thread. Does
/// nothing on X11, where menus grab keyboard and pointer.
class MenuFocus final : public QObject {
    Q_OBJECT

public:
    /// The menu outlives this.
    explicit MenuFocus(QMenu& menu);
    ~MenuFocus() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take();
    void release();

    QMenu& m_menu;
    std::unique_ptr<QWidget> m_holder;
};

} // namespace orvane
