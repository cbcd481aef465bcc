// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menus/MenuKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>

namespace orvane {

namespace {

constexpr QLatin1StringView name{"menuKeys"};

class MenuKeys final : public QObject {
public:
    explicit MenuKeys(QMenu& menu) : QObject(&menu), m_menu(menu) {
        setObjectName(name);
        menu.installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto* press = static_cast<const QKeyEvent*>(event);
        const QKeySequence keys(press->keyCombination());
        for (QAction* action : m_menu.actions()) {
            if (action->shortcut() != keys || !action->isEnabled())
                continue;
            while (QWidget* popup = QApplication::activePopupWidget())
                popup->close();
            action->trigger();
            return true;
        }
        return false;
    }

private:
    QMenu& m_menu;
};

} // namespace

void handleKeyEquivalents(QMenu& menu) {
    if (menu.findChild<QObject*>(name, Qt::FindDirectChildrenOnly) == nullptr)
        new MenuKeys(menu);
}

} // namespace orvane
