// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

namespace orvane {

/// Converts plain text or HTML to readable plain text: removes tags, puts paragraphs on lines of
/// their own, gives list items bullets, resolves the common character references, and drops
/// scripts, styles, and characters that are invisible or change the direction. It interprets
/// nothing, so the text cannot make it load or run anything. Runs in linear time, on at most
/// `maximumPlainText` characters. Any thread. QTextDocumentFragment drops the bullets, and needs
/// quadratic time for unclosed tags: 3 s for 64 KiB of "<b>".
[[nodiscard]] QString plainText(QStringView markup);

inline constexpr qsizetype maximumPlainText = 64 * 1024;

/// Returns `text` on one line of at most `maximum` UTF-16 units, without characters that are
/// invisible or change the direction. Joiners are kept, since scripts and emoji need them.
[[nodiscard]] QString oneLine(QStringView text, qsizetype maximum);

} // namespace orvane
