// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace orvane {

/// Replaces the file at `path` by one with these bytes, atomically. Returns false on failure, for
/// example on a full disk; the file is then unchanged. Any thread. A plain QSaveFile is not enough:
/// it buffers, and commits an empty file if flushing the buffer fails.
[[nodiscard]] bool replaceFile(const QString& path, const QByteArray& bytes);

} // namespace orvane
