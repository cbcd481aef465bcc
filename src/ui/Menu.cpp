// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/Menu.h"

#include "ui/ApplicationActions.h"

#include <QMenu>

#include <tuple>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

void perform(const MenuItem& item, ApplicationActions& actions) {
    switch (item.action) {
    case MenuAction::none:
    case MenuAction::openSettings:
    case MenuAction::addChannel:
    case MenuAction::showAbout:
    case MenuAction::checkForUpdates:
        return; // Nothing that could be chosen.
    case MenuAction::channelSelected:
        return actions.menuChannelSelected(item.representedObject);
    case MenuAction::resolutionSelected:
        return actions.menuResolutionSelected(item.representedObject);
    case MenuAction::sleepTimer:
        return actions.menuSleepTimer(item.tag);
    case MenuAction::cancelSleepTimer:
        return actions.menuCancelSleepTimer();
    case MenuAction::toggleGhostMode:
        return actions.menuToggleGhostMode();
    case MenuAction::terminate:
        return actions.terminate();
    }
}

QString label(const MenuItem& item) {
    QString text = u"    "_s.repeated(item.indentationLevel) + item.title;
    // An ampersand of a name is no mnemonic.
    text.replace(u'&', u"&&"_s);
    if (item.keyEquivalent.isEmpty())
        return text;
    // As text and not as a shortcut: the keys are listened to in one place, which is not here.
    const QString modifier = item.modifierMask == ModifierMask::command ? u"Ctrl+"_s : QString();
    return text + u'\t' + modifier + item.keyEquivalent.toUpper();
}

} // namespace

bool operator==(const MenuItem& a, const MenuItem& b) {
    const auto all = [](const MenuItem& item) {
        return std::tie(item.title, item.action, item.representedObject, item.tag,
                        item.keyEquivalent, item.modifierMask, item.isOn, item.indentationLevel,
                        item.submenu, item.isSeparator);
    };
    return all(a) == all(b);
}

void renderMenu(const Menu& menu, ApplicationActions& actions, QMenu& target) {
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
        action->setEnabled(item.action != MenuAction::none && actions.canPerform(item.action));
        action->setCheckable(item.isOn);
        action->setChecked(item.isOn);
        QObject::connect(action, &QAction::triggered, &target,
                         [item, &actions] { perform(item, actions); });
    }
}

} // namespace orvane
