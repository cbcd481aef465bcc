// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menus/Menu.h"

#include <tuple>

namespace orvane {

bool operator==(const MenuItem& a, const MenuItem& b) {
    const auto all = [](const MenuItem& item) {
        return std::tie(item.title, item.action, item.representedObject, item.tag,
                        item.keyEquivalent, item.modifierMask, item.isOn, item.indentationLevel,
                        item.submenu, item.isSeparator);
    };
    return all(a) == all(b);
}

} // namespace orvane
