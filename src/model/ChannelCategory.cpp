// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/ChannelCategory.h"

namespace orvane {

using namespace Qt::StringLiterals;

QString rawValue(ChannelCategory category) {
    switch (category) {
    case ChannelCategory::featured:
        return u"مميزة"_s;
    case ChannelCategory::saudiGulf:
        return u"السعودية والخليج"_s;
    case ChannelCategory::religious:
        return u"قرآن وسنة"_s;
    case ChannelCategory::international:
        return u"دولي بالإنجليزية"_s;
    case ChannelCategory::custom:
        break;
    }
    return u"قنواتي"_s;
}

QString displayName(ChannelCategory category) {
    return rawValue(category);
}

QString identifier(ChannelCategory category) {
    switch (category) {
    case ChannelCategory::featured:
        return u"featured"_s;
    case ChannelCategory::saudiGulf:
        return u"saudi-gulf"_s;
    case ChannelCategory::religious:
        return u"religious"_s;
    case ChannelCategory::international:
        return u"international"_s;
    case ChannelCategory::custom:
        break;
    }
    return u"custom"_s;
}

} // namespace orvane
