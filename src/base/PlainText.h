// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

namespace orvane {

/// Readable text from what may be text or may have HTML's markup in it: tags go, paragraphs become
/// lines, list entries get bullets, the common character references are resolved; what belongs to
/// scripts and styles is left out. Nothing is interpreted, so nothing can be loaded or run by it.
/// The work is proportional to the length of the text, which is cut at `maximumPlainText`. Any
/// thread.
[[nodiscard]] QString plainText(QStringView markup);

inline constexpr qsizetype maximumPlainText = 64 * 1024;

/// `text` on one line, without characters that change the direction or cannot be seen, and with at
/// most `maximum` UTF-16 units. Joiners stay, as scripts and emoji need them.
[[nodiscard]] QString oneLine(QStringView text, qsizetype maximum);

} // namespace orvane
