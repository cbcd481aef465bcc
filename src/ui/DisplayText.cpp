// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/DisplayText.h"

#include "language/Translation.h"

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
    const bool isMixed = line.isRightToLeft() || isRightToLeftInterface();
    return isMixed ? firstStrongIsolate + line + popDirectionalIsolate : line;
}

QString escapedMnemonics(QString text) {
    return text.replace(u'&', u"&&"_s);
}

QString title(Resolution resolution) {
    return resolution == Resolution::rBest ? translated("Menu", "Best") : displayName(resolution);
}

QString title(AppTheme theme) {
    switch (theme) {
    case AppTheme::system:
        return translated("Settings", "System");
    case AppTheme::dark:
        return translated("Settings", "Dark");
    case AppTheme::light:
        break;
    }
    return translated("Settings", "Light");
}

} // namespace orvane
