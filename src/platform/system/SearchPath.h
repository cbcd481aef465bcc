// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace orvane {

/// Returns `path`, a list of folders as in PATH, with `folder` appended unless it is already in it.
/// Any thread.
[[nodiscard]] QString searchPathWith(const QString& path, const QString& folder);

/// Returns PATH of the environment; if it is unset or empty, the default of the system, as an empty
/// entry in a longer list would mean the current folder. Any thread.
[[nodiscard]] QString searchPathOf(const QProcessEnvironment& environment);

} // namespace orvane
