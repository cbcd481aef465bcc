// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace orvane {

/// Where the starts of a program find each other: a lock file and a socket side by side. A value;
/// any thread.
struct InstanceAddress {
    QString lockPath;
    QString socketPath;
};

/// The first of `folders` that is, or can be made, a folder of this user which nobody else can
/// look into; that is all that keeps other users out. Nothing when there is none. A folder whose
/// name is too long for a socket's address is passed over. `name` is that of the two files in it.
[[nodiscard]] std::optional<InstanceAddress> instanceAddress(const QStringList& folders,
                                                             const QString& name);

/// `program` in the user's run-time folder, and where there is none, in the folder for temporary
/// files under a name that has the user's number.
[[nodiscard]] QStringList instanceFolders(const QString& program);

/// A file name for the session whose X display is `display`; without one, for the Wayland display.
/// The names of the screens of one display (":0" and ":0.0") give the same one. `profile` tells
/// copies apart that share nothing else but the session.
[[nodiscard]] QString instanceName(const QString& display, const QString& waylandDisplay,
                                   const QString& profile);

} // namespace orvane
