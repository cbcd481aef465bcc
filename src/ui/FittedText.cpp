// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/FittedText.h"

#include <QFont>
#include <QFontMetricsF>
#include <QStringList>
#include <QTextLayout>

namespace orvane {

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
        if (lines.size() + 1 == maximumLines) {
            const QString rest = flat.sliced(line.textStart());
            lines.append(QFontMetricsF(font).elidedText(rest, Qt::ElideRight, width));
            break;
        }
        lines.append(flat.sliced(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines.join(u'\n');
}

} // namespace orvane
