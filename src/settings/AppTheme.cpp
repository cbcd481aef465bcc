// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/AppTheme.h"

namespace orvane {

using namespace Qt::StringLiterals;

QString rawValue(AppTheme theme) {
    switch (theme) {
    case AppTheme::system:
        return u"System"_s;
    case AppTheme::dark:
        return u"Dark"_s;
    case AppTheme::light:
        break;
    }
    return u"Light"_s;
}

} // namespace orvane
