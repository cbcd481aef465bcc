// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/FittedText.h"

#include <QFont>
#include <QFontMetricsF>
#include <QStringList>
#include <QTextLayout>

namespace orvane {

namespace {

/// Returns the isolates that are still open at the end of `text`: each line is a paragraph of its
/// own, and would not know of one that began on the line above.
QString openIsolates(QStringView text) {
    constexpr QChar leftToRight(0x2066);
    constexpr QChar firstStrong(0x2068);
    constexpr QChar pop(0x2069);
    QString open;
    for (const QChar c : text) {
        if (c >= leftToRight && c <= firstStrong)
            open += c;
        else if (c == pop)
            open.chop(1);
    }
    return open;
}

} // namespace

QString fittedText(const QString& text, const QFont& font, double width, int maximumLines) {
    // The layout below does not count the line breaks of the text itself.
    const QString flat = text.simplified();
    QTextLayout layout(flat, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);

    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const QString isolates = openIsolates(QStringView(flat).first(line.textStart()));
        if (lines.size() + 1 == maximumLines) {
            const QString rest = isolates + flat.sliced(line.textStart());
            lines.append(QFontMetricsF(font).elidedText(rest, Qt::ElideRight, width));
            break;
        }
        lines.append(isolates + flat.sliced(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines.join(u'\n');
}

} // namespace orvane
