// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// Returns a channel's name as one line of limited length. Names come from the network and may have
/// line breaks, thousands of characters, or control characters that change the direction of the
/// surrounding text. A right-to-left name keeps its own direction. Any thread.
[[nodiscard]] QString singleLineName(const QString& name);

/// Escapes ampersands for controls that read them as mnemonics. Any thread.
[[nodiscard]] QString escapedMnemonics(QString text);

} // namespace orvane
