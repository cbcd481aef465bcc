// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menus/Menu.h"

#include <algorithm>
#include <tuple>

namespace orvane {

bool operator==(const MenuItem& a, const MenuItem& b) {
    const auto all = [](const MenuItem& item) {
        return std::tie(item.title, item.action, item.representedObject, item.tag,
                        item.keyEquivalent, item.modifierMask, item.isOn, item.isEnabled,
                        item.indentationLevel, item.submenu, item.isSeparator);
    };
    return all(a) == all(b);
}

Menu withSubmenus(const Menu& menu) {
    Menu folded;
    bool isInCategory = false;
    for (const MenuItem& item : menu) {
        const bool isHeader =
            !item.isSeparator && item.action == MenuAction::none && item.submenu.isEmpty();
        if (isHeader) {
            isInCategory = true;
            folded.append(item);
        } else if (!isInCategory) {
            folded.append(item);
        } else if (item.isSeparator) {
            isInCategory = false;
        } else {
            folded.last().submenu.append(item);
            folded.last().submenu.last().indentationLevel = 0;
        }
    }
    const auto end = std::ranges::find_if(folded, [](const MenuItem& item) {
        return item.submenu.isEmpty() || item.submenu.first().action != MenuAction::channelSelected;
    });
    if (end != folded.begin())
        folded.insert(end, MenuItem::separator());
    return folded;
}

} // namespace orvane
