// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace orvane::test {

/// Called with each window in each of its states, and the name of the state.
using Look = std::function<void(const QString& name, QWidget& window)>;

/// Makes every window of the program on fixed data, in the language and the look of the moment, and
/// brings it into every state that shows other texts. A window is gone after its last state.
void visitWindows(const Look& look);

} // namespace orvane::test
