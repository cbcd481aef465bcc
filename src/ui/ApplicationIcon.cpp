// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/ApplicationIcon.h"

#include <QIcon>

namespace orvane {

using namespace Qt::StringLiterals;

QIcon applicationIcon() {
    return QIcon(u":/orvane.svg"_s);
}

} // namespace orvane
