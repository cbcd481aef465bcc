// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/instance/InstanceAddress.h"

#include "base/FileDescriptor.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QUrl>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestSocketPath = sizeof(sockaddr_un::sun_path) - 1;
/// Length of the hash: enough to tell the few profiles of a user apart.
constexpr qsizetype profileLetters = 8;

bool isPrivateFolder(const QString& folder) {
    const QByteArray path = QFile::encodeName(folder);
    ::mkdir(path.constData(), S_IRWXU);
    // O_NOFOLLOW, because any user can create a link in the folder for temporary files.
    const FileDescriptor opened(
        ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status{};
    return opened.isOpen() && ::fstat(opened.get(), &status) == 0 && status.st_uid == ::getuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

} // namespace

std::optional<InstanceAddress> instanceAddress(const QStringList& folders, const QString& name) {
    for (const QString& folder : folders) {
        const QString path = folder + u'/' + name;
        InstanceAddress address{.lockPath = path + u".lock"_s, .socketPath = path + u".socket"_s};
        if (QFile::encodeName(address.socketPath).size() <= longestSocketPath &&
            isPrivateFolder(folder))
            return address;
    }
    return std::nullopt;
}

QStringList instanceFolders(const QString& program) {
    QStringList folders;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(runtime))
        folders += runtime + u'/' + program;
    folders += QDir::tempPath() + u'/' + program + u'-' + QString::number(::getuid());
    return folders;
}

QString instanceName(const QString& display, const QString& waylandDisplay,
                     const QString& profile) {
    static const QRegularExpression screen(u"(:[0-9]+)\\.[0-9]+$"_s);
    QString session = display.isEmpty() ? waylandDisplay : display;
    if (!display.isEmpty())
        session.replace(screen, u"\\1"_s);
    const QByteArray hash =
        QCryptographicHash::hash(profile.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QString::fromLatin1(QUrl::toPercentEncoding(session) + '-' + hash.first(profileLetters));
}

} // namespace orvane
