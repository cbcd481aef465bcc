// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QFont;

namespace orvane {

/// `text` broken into at most `maximumLines` lines of `width` points, the last of them cut with an
/// ellipsis where more would follow. Lines are separated by line feeds.
[[nodiscard]] QString fittedText(const QString& text, const QFont& font, double width,
                                 int maximumLines);

} // namespace orvane
