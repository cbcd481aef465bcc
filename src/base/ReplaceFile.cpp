// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ReplaceFile.h"

#include <QSaveFile>

namespace orvane {

bool replaceFile(const QString& path, const QByteArray& bytes) {
    QSaveFile file(path);
    // What the toolkit still holds in a buffer at the end it may fail to write without a word, and
    // would then put an empty file in the place of a good one.
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           file.write(bytes) == bytes.size() && file.commit();
}

} // namespace orvane
