// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/Resolution.h"

namespace orvane {

using namespace Qt::StringLiterals;

QString rawValue(Resolution resolution) {
    if (resolution == Resolution::rBest)
        return u"Best"_s;
    return QString::number(heightValue(resolution)) + u'p';
}

QString displayName(Resolution resolution) {
    return rawValue(resolution);
}

int heightValue(Resolution resolution) {
    switch (resolution) {
    case Resolution::r360:
        return 360;
    case Resolution::r480:
        return 480;
    case Resolution::r720:
        return 720;
    case Resolution::rBest:
        break;
    }
    return 9999;
}

QString ytdlpFormat(Resolution resolution) {
    if (resolution == Resolution::rBest)
        return u"best"_s;
    return u"best[height<=%1]"_s.arg(heightValue(resolution));
}

} // namespace orvane
