// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// The file system in which tools are searched. The root and home folders are parameters, so that a
/// test can model any machine in a temporary folder. A value; any thread. Queries return false on
/// any error.
class HostFileSystem {
public:
    /// The real machine.
    [[nodiscard]] static HostFileSystem real();

    /// `root` has no slash at its end. `home` is a real path, not relative to `root`, and holds the
    /// folder for configurations.
    HostFileSystem(QString root, QString home);

    [[nodiscard]] const QString& home() const { return m_home; }
    [[nodiscard]] const QString& configHome() const { return m_configHome; }

    /// Returns the real path of `path` on the modelled machine.
    [[nodiscard]] QString systemPath(const QString& path) const;

    /// True for folders too.
    [[nodiscard]] static bool exists(const QString& path);
    [[nodiscard]] static bool isExecutableFile(const QString& path);

private:
    QString m_root;
    QString m_home;
    QString m_configHome;
};

} // namespace orvane
