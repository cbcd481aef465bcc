// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DisplayText.h"

#include "base/PlainText.h"

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype maximumLength = 80;
constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popDirectionalIsolate(0x2069);

} // namespace

QString singleLineName(const QString& name) {
    QString line = oneLine(name, maximumLength + 1);
    if (line.size() > maximumLength)
        line = oneLine(line, maximumLength - 1) + u'…';
    return line.isRightToLeft() ? firstStrongIsolate + line + popDirectionalIsolate : line;
}

QString escapedMnemonics(QString text) {
    return text.replace(u'&', u"&&"_s);
}

} // namespace orvane
