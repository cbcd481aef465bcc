// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/Translation.h"

#include <QMenu>
#include <QStyleOptionMenuItem>

namespace orvane {

/// A menu that draws its keys from left to right, in a right-to-left interface too, where "Ctrl+,"
/// would begin with the comma. Only what it draws itself changes, not what a panel draws for it.
class DirectedMenu final : public QMenu {
public:
    using QMenu::QMenu;

protected:
    void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override {
        QMenu::initStyleOption(option, action);
        // The keys follow the title.
        const qsizetype tab = option->text.indexOf(u'\t');
        if (tab >= 0)
            option->text = option->text.first(tab + 1) + leftToRight(option->text.sliced(tab + 1));
    }
};

} // namespace orvane
