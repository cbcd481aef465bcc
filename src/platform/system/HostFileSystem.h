// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// Where tools are looked for. The folder that stands for "/" and the home folder are given from
/// outside, so that a test can lay out any machine in a temporary folder. A value; any thread;
/// tests of files never fail, they answer no.
class HostFileSystem {
public:
    /// The real machine.
    [[nodiscard]] static HostFileSystem real();

    /// `root` without a slash at its end; `home` is taken as it is, not below `root`.
    HostFileSystem(QString root, QString home);

    [[nodiscard]] const QString& home() const { return m_home; }

    /// The path at which the system's file `path` lies on this machine.
    [[nodiscard]] QString systemPath(const QString& path) const;

    /// Anything of that name, a folder too.
    [[nodiscard]] static bool exists(const QString& path);
    [[nodiscard]] static bool isExecutableFile(const QString& path);

private:
    QString m_root;
    QString m_home;
};

} // namespace orvane
