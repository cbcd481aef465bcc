// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/MissingFonts.h"

#include <QApplication>
#include <QFontMetrics>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr uint arabicAin = 0x0639;
constexpr uint television = 0x1F4FA;

} // namespace

QStringList missingFonts() {
    const QFontMetrics metrics(QApplication::font());
    QStringList missing;
    if (!metrics.inFontUcs4(arabicAin))
        missing += u"no font has Arabic letters, so the names of channels are boxes (Debian: "
                   "fonts-noto-core)"_s;
    if (!metrics.inFontUcs4(television))
        missing += u"no font has emoji, so the buttons show boxes (Debian: "
                   "fonts-noto-color-emoji)"_s;
    return missing;
}

} // namespace orvane
