// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;

namespace orvane {

/// Makes the shortcuts that the items of the menu show act while it is open, which Qt does for a
/// menu bar only. Main thread; lasts as long as the menu.
void handleKeyEquivalents(QMenu& menu);

} // namespace orvane
