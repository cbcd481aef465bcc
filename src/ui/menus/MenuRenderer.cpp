// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menus/MenuRenderer.h"

#include "ui/ApplicationActions.h"
#include "ui/DisplayText.h"
#include "ui/menus/MenuKeys.h"

#include <QGuiApplication>
#include <QKeySequence>
#include <QMenu>
#include <QVariant>

#include <algorithm>

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
    case MenuAction::goBack:
        return actions.menuGoBack();
    case MenuAction::goLive:
        return actions.menuGoLive();
    case MenuAction::toggleSoundOnly:
        return actions.menuToggleSoundOnly();
    case MenuAction::showAbout:
        return actions.menuShowAbout();
    case MenuAction::checkForUpdates:
        return actions.menuCheckForUpdates();
    case MenuAction::terminate:
        return actions.terminate();
    }
}

/// Rows start on the side where the interface begins, whatever the direction of their titles: trays
/// that draw the menu look for the first letter of each.
QString label(const MenuItem& item) {
    constexpr QChar leftToRightMark(0x200E);
    constexpr QChar rightToLeftMark(0x200F);
    return (QGuiApplication::isRightToLeft() ? rightToLeftMark : leftToRightMark) +
           u"    "_s.repeated(item.indentationLevel) + escapedMnemonics(singleLineName(item.title));
}

/// Shows the key, which acts while the menu is open; otherwise `HotkeyManager` handles the keys.
void showKeyEquivalent(const MenuItem& item, QAction& action) {
    const QString modifier = item.modifierMask == ModifierMask::command ? u"Ctrl+"_s : QString();
    action.setShortcut(item.keyEquivalent.isEmpty()
                           ? QKeySequence()
                           : QKeySequence(modifier + item.keyEquivalent.toUpper()));
    action.setShortcutVisibleInContextMenu(true);
}

/// What an entry does, which never changes; its title and its marks do.
QVariantList identity(const MenuItem& item) {
    return {item.isSeparator, !item.submenu.isEmpty(), static_cast<int>(item.action),
            item.representedObject, item.tag};
}

bool hasEntriesOf(const Menu& menu, const QMenu& target) {
    return std::ranges::equal(menu, target.actions(), [](const MenuItem& item, QAction* action) {
        return action->data() == identity(item) &&
               (item.submenu.isEmpty() || hasEntriesOf(item.submenu, *action->menu()));
    });
}

void addEntry(const MenuItem& item, ApplicationActions& actions, QMenu& target) {
    QAction* action = item.isSeparator          ? target.addSeparator()
                      : !item.submenu.isEmpty() ? target.addMenu(QString())->menuAction()
                                                : target.addAction(QString());
    action->setData(identity(item));
    for (const MenuItem& inner : item.submenu)
        addEntry(inner, actions, *action->menu());
    // Queued, as the action may rebuild this menu, and in the context of the application, as the
    // menu may be deleted first.
    QObject::connect(action, &QAction::triggered, &target, [item, &actions] {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [item, &actions] { perform(item, actions); },
            Qt::QueuedConnection);
    });
}

void updateEntries(const Menu& menu, const QMenu& target) {
    const QList<QAction*> entries = target.actions();
    for (qsizetype i = 0; i < menu.size(); ++i) {
        const MenuItem& item = menu[i];
        QAction& action = *entries[i];
        if (item.isSeparator)
            continue;
        action.setText(label(item));
        if (!item.submenu.isEmpty()) {
            updateEntries(item.submenu, *action.menu());
            continue;
        }
        action.setEnabled(item.isEnabled && item.action != MenuAction::none);
        action.setCheckable(item.isOn);
        action.setChecked(item.isOn);
        showKeyEquivalent(item, action);
    }
}

} // namespace

void renderMenu(const Menu& menu, ApplicationActions& actions, QMenu& target) {
    if (!hasEntriesOf(menu, target)) {
        // Replacing the entries of an open menu would close it.
        if (target.isVisible())
            return;
        // A menu that is taller than the screen scrolls instead of using columns.
        target.setStyleSheet(u"QMenu { menu-scrollable: 1; }"_s);
        target.clear();
        handleKeyEquivalents(target);
        qDeleteAll(target.findChildren<QMenu*>(Qt::FindDirectChildrenOnly)); // The submenus.
        for (const MenuItem& item : menu)
            addEntry(item, actions, target);
    }
    updateEntries(menu, target);
}

void renderMenuWithin(int height, const Menu& menu, ApplicationActions& actions, QMenu& target) {
    renderMenu(menu, actions, target);
    if (target.sizeHint().height() > height)
        renderMenu(withSubmenus(menu), actions, target);
}

} // namespace orvane
