// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/SearchPath.h"

#include <QStringList>

namespace orvane {

QString searchPathWith(const QString& path, const QString& folder) {
    if (path.isEmpty())
        return folder;
    return path.split(u':').contains(folder) ? path : path + u':' + folder;
}

} // namespace orvane
