// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// Has the desktop's file manager show the folder with the file marked, or, where it cannot be
/// asked that, the folder. The file itself is not opened. Main thread; returns at once, and whether
/// anybody showed it is not known.
void showInFolder(const QString& path);

} // namespace orvane
