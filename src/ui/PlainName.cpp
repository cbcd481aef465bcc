// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/PlainName.h"

#include "base/PlainText.h"

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestName = 80;
constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popDirectionalIsolate(0x2069);

} // namespace

QString plainName(const QString& name) {
    QString line = oneLine(name, longestName + 1);
    if (line.size() > longestName)
        line = oneLine(line, longestName - 1) + u'…';
    return line.isRightToLeft() ? firstStrongIsolate + line + popDirectionalIsolate : line;
}

QString controlText(QString text) {
    return text.replace(u'&', u"&&"_s);
}

} // namespace orvane
