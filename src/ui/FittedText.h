// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QFont;

namespace orvane {

/// Breaks `text` into at most `maximumLines` lines of `width` points, separated by line feeds. The
/// last line ends with an ellipsis if the text is longer. What is isolated from the direction of
/// the text stays so on each line.
[[nodiscard]] QString fittedText(const QString& text, const QFont& font, double width,
                                 int maximumLines);

} // namespace orvane
