// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/HostFileSystem.h"

#include <QDir>
#include <QFileInfo>

namespace orvane {

HostFileSystem HostFileSystem::real() {
    return {QString(), QDir::homePath()};
}

HostFileSystem::HostFileSystem(QString root, QString home)
    : m_root(std::move(root)), m_home(std::move(home)) {}

QString HostFileSystem::systemPath(const QString& path) const {
    return m_root + path;
}

bool HostFileSystem::exists(const QString& path) {
    return QFileInfo::exists(path);
}

bool HostFileSystem::isExecutableFile(const QString& path) {
    const QFileInfo info(path);
    return info.isFile() && info.isExecutable();
}

} // namespace orvane
