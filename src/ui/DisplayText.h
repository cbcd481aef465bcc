// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Resolution.h"
#include "settings/AppTheme.h"

#include <QString>

namespace orvane {

/// Returns a channel's name as one line of limited length. Names come from the network and may have
/// line breaks, thousands of characters, or control characters that change the direction of the
/// surrounding text. A name keeps its own direction within a text of the other. Any thread.
[[nodiscard]] QString singleLineName(const QString& name);

/// Escapes ampersands for controls that read them as mnemonics. Any thread.
[[nodiscard]] QString escapedMnemonics(QString text);

/// Returns what menus and pop-ups call it in the language of the interface. Any thread.
[[nodiscard]] QString title(Resolution resolution);
[[nodiscard]] QString title(AppTheme theme);

} // namespace orvane
