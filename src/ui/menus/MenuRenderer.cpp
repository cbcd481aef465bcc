// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menus/MenuRenderer.h"

#include "ui/ApplicationActions.h"
#include "ui/DisplayText.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

void perform(const MenuItem& item, ApplicationActions& actions) {
    switch (item.action) {
    case MenuAction::none:
        return;
    case MenuAction::channelSelected:
        return actions.menuChannelSelected(item.representedObject);
    case MenuAction::resolutionSelected:
        return actions.menuResolutionSelected(item.representedObject);
    case MenuAction::sleepTimer:
        return actions.menuSleepTimer(item.tag);
    case MenuAction::cancelSleepTimer:
        return actions.menuCancelSleepTimer();
    case MenuAction::openSettings:
        return actions.menuOpenSettings();
    case MenuAction::addChannel:
        return actions.menuAddChannel();
    case MenuAction::toggleGhostMode:
        return actions.menuToggleGhostMode();
    case MenuAction::showAbout:
        return actions.menuShowAbout();
    case MenuAction::checkForUpdates:
        return actions.menuCheckForUpdates();
    case MenuAction::terminate:
        return actions.terminate();
    }
}

QString label(const MenuItem& item) {
    return u"    "_s.repeated(item.indentationLevel) + escapedMnemonics(singleLineName(item.title));
}

/// Only shows the shortcut: `HotkeyManager` handles the keys, and a menu without a window does not
/// activate its shortcuts.
void showKeyEquivalent(const MenuItem& item, QAction& action) {
    if (item.keyEquivalent.isEmpty())
        return;
    const QString modifier = item.modifierMask == ModifierMask::command ? u"Ctrl+"_s : QString();
    const QString keys = modifier + item.keyEquivalent.toUpper();
    // A number such as 10 is no key.
    if (item.keyEquivalent.size() > 1)
        return action.setText(action.text() + u'\t' + keys);
    action.setShortcut(QKeySequence(keys));
    action.setShortcutVisibleInContextMenu(true);
}

} // namespace

void renderMenu(const Menu& menu, ApplicationActions& actions, QMenu& target) {
    // A menu that is taller than the screen scrolls instead of using columns.
    target.setStyleSheet(u"QMenu { menu-scrollable: 1; }"_s);
    target.clear();
    qDeleteAll(target.findChildren<QMenu*>(Qt::FindDirectChildrenOnly)); // The submenus.
    for (const MenuItem& item : menu) {
        if (item.isSeparator) {
            target.addSeparator();
            continue;
        }
        if (!item.submenu.isEmpty()) {
            renderMenu(item.submenu, actions, *target.addMenu(label(item)));
            continue;
        }
        QAction* action = target.addAction(label(item));
        action->setEnabled(item.action != MenuAction::none);
        action->setCheckable(item.isOn);
        action->setChecked(item.isOn);
        showKeyEquivalent(item, *action);
        // Queued, as the action may rebuild this menu, and in the context of the application, as
        // the menu may be deleted first.
        QObject::connect(action, &QAction::triggered, &target, [item, &actions] {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [item, &actions] { perform(item, actions); },
                Qt::QueuedConnection);
        });
    }
}

} // namespace orvane
