// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/SearchPath.h"

#include <QStringList>

namespace orvane {

using namespace Qt::StringLiterals;

QString searchPathWith(const QString& path, const QString& folder) {
    if (path.isEmpty())
        return folder;
    return path.split(u':').contains(folder) ? path : path + u':' + folder;
}

QString searchPathOf(const QProcessEnvironment& environment) {
    const QString path = environment.value(u"PATH"_s);
    return path.isEmpty() ? u"/usr/local/bin:/usr/bin:/bin"_s : path;
}

} // namespace orvane
