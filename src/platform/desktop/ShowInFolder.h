// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// Asks the desktop's file manager to show the folder with the file selected, or opens the folder
/// where it does not support that. Does not open the file itself. Main thread; returns at once and
/// reports no errors.
void showInFolder(const QString& path);

} // namespace orvane
