// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// Returns `path`, a list of folders as in PATH, with `folder` appended unless it is already in it.
/// Any thread.
[[nodiscard]] QString searchPathWith(const QString& path, const QString& folder);

} // namespace orvane
