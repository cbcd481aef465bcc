// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace orvane {

/// Puts a file of these bytes in the place of the one at `path`. False when that cannot be done, on
/// a full disk for example; the file is then what it was. Any thread.
[[nodiscard]] bool replaceFile(const QString& path, const QByteArray& bytes);

} // namespace orvane
