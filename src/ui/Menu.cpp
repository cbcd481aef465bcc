// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/Menu.h"

#include "ui/ApplicationActions.h"

#include <QMenu>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

void perform(const MenuItem& item, ApplicationActions& actions) {
    switch (item.action) {
    case MenuAction::none:
        return;
    case MenuAction::channelSelected:
        actions.menuChannelSelected(item.representedObject);
        return;
    }
}

} // namespace

void renderMenu(const Menu& menu, ApplicationActions& actions, QMenu& target) {
    for (const MenuItem& item : menu) {
        if (item.isSeparator) {
            target.addSeparator();
            continue;
        }
        // An ampersand of a name is no mnemonic.
        QString title = item.title;
        title.replace(u'&', u"&&"_s);
        QAction* action = target.addAction(u"    "_s.repeated(item.indentationLevel) + title);
        action->setEnabled(item.action != MenuAction::none);
        if (item.action != MenuAction::none) {
            action->setCheckable(item.isOn);
            action->setChecked(item.isOn);
        }
        QObject::connect(action, &QAction::triggered, &target,
                         [item, &actions] { perform(item, actions); });
    }
}

} // namespace orvane
