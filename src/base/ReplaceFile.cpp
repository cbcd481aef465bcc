// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ReplaceFile.h"

#include <QSaveFile>

namespace orvane {

bool replaceFile(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    // Unbuffered: commit() ignores a failure to flush the buffer, and would replace a good file by
    // an empty one.
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           file.write(bytes) == bytes.size() && file.commit();
}

} // namespace orvane
