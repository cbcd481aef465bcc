// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/ShowInFolder.h"

#include "base/Logging.h"
#include "base/ProcessSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace orvane {

using namespace Qt::StringLiterals;

void showInFolder(const QString& path) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    const QString noStartupId;
    message << QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)} << noStartupId;
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message));
    const QUrl folder = QUrl::fromLocalFile(QFileInfo(path).path());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, folder] {
        if (watcher->isError()) {
            qCInfo(logDBus) << "FileManager1.ShowItems failed:" << watcher->error().message();
            const ProcessSettings::UsersOwn forTheFileManager;
            QDesktopServices::openUrl(folder);
        }
        watcher->deleteLater();
    });
}

} // namespace orvane
