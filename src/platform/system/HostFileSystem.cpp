// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/HostFileSystem.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace orvane {

using namespace Qt::StringLiterals;

HostFileSystem HostFileSystem::real() {
    HostFileSystem host(QString(), QDir::homePath());
    host.m_configHome = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return host;
}

HostFileSystem::HostFileSystem(QString root, QString home)
    : m_root(std::move(root)), m_home(std::move(home)), m_configHome(m_home + u"/.config"_s) {}

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
