// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace orvane {

/// Where the copies of a program find each other: a lock file and a socket in one folder. A value;
/// any thread.
struct InstanceAddress {
    QString lockPath;
    QString socketPath;
};

/// Returns the address in the first of `folders` that is, or can be created as, a folder which only
/// this user can access; nothing else keeps other users out. Returns nullopt when there is none.
/// Skips folders whose path is too long for a socket address. `name` is the base name of both
/// files.
[[nodiscard]] std::optional<InstanceAddress> instanceAddress(const QStringList& folders,
                                                             const QString& name);

/// Returns the folders to try: `program` in XDG_RUNTIME_DIR, if that is set, and then `program`
/// with the user's id in the folder for temporary files.
[[nodiscard]] QStringList instanceFolders(const QString& program);

/// Returns a file name for the session with the X display `display` or, without one, with the
/// Wayland display. All screens of a display (":0" and ":0.0") have the same name. Copies with
/// different profiles have different names.
[[nodiscard]] QString instanceName(const QString& display, const QString& waylandDisplay,
                                   const QString& profile);

} // namespace orvane
