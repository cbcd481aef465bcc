// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/UpdateFile.h"

#include "base/PlainText.h"

#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

const QString unfinished = u".part"_s;
/// File systems allow 255 bytes.
constexpr qsizetype longestName = 180;
constexpr int mostNumbers = 1000;

/// A link that leads nowhere is there, too.
bool isTaken(const QString& path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

/// Unlike the toolkit's own renaming this one cannot take another file's place in any race.
bool renameToFreeName(const QString& from, const QString& to) {
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE) == 0)
        return true;
    // Not all file systems can.
    return errno == EINVAL && ::link(source, target) == 0 && ::unlink(source) == 0;
}

/// ".gz" belongs to what is before it: ".tar.gz".
qsizetype suffixesAt(const QString& name) {
    const qsizetype last = name.lastIndexOf(u'.');
    const QStringView before = QStringView(name).first(std::max<qsizetype>(last, 0));
    return before.endsWith(u".tar") ? before.size() - 4 : last;
}

} // namespace

QString safeFileName(const QUrl& address) {
    // What was escaped in the address may be a separator.
    QString name =
        oneLine(address.fileName(QUrl::FullyDecoded).replace(u'\\', u'/'), longestName * 2);
    name = name.sliced(name.lastIndexOf(u'/') + 1);
    // When it is too long, its end stays: that says what it is.
    while (name.toUtf8().size() > longestName || name.startsWith(u'.') || name.startsWith(u'-') ||
           name.startsWith(u' ') || (!name.isEmpty() && name.front().isLowSurrogate()))
        name = name.sliced(1);
    return name.isEmpty() ? u"update"_s : name;
}

QString numberedFileName(const QString& name, int number) {
    if (number == 0)
        return name;
    const qsizetype at = suffixesAt(name);
    const QString inserted = u" (%1)"_s.arg(number);
    return at > 0 ? name.first(at) + inserted + name.sliced(at) : name + inserted;
}

UpdateFile::UpdateFile(QString folder, QString name)
    : m_folder(std::move(folder)), m_name(std::move(name)) {}

UpdateFile::~UpdateFile() {
    if (m_fate == Fate::open)
        discard();
}

bool UpdateFile::open() {
    const QDir folder(m_folder);
    if (!folder.mkpath(u"."_s))
        return false;
    for (; m_number < mostNumbers; ++m_number) {
        const QString path = folder.filePath(numberedFileName(m_name, m_number));
        if (isTaken(path) || isTaken(path + unfinished))
            continue;
        m_file.setFileName(path + unfinished);
        if (m_file.open(QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered))
            return isAt(path + unfinished);
        if (!isTaken(path + unfinished))
            return false;
    }
    return false;
}

bool UpdateFile::append(const QByteArray& piece) {
    return m_file.write(piece) == piece.size();
}

bool UpdateFile::isSigned(const UpdateKey& key, const QByteArray& signature) {
    const qint64 size = m_file.size();
    const uchar* bytes = size > 0 ? m_file.map(0, size) : nullptr;
    return bytes != nullptr && key.hasSigned({bytes, static_cast<std::size_t>(size)}, signature);
}

std::optional<QString> UpdateFile::finish() {
    if (::fsync(m_file.handle()) != 0)
        return std::nullopt;
    m_file.close();
    const QMutexLocker lock(&m_mutex);
    if (m_fate == Fate::discarded)
        return std::nullopt;
    for (; m_number < mostNumbers; ++m_number) {
        QString path = QDir(m_folder).filePath(numberedFileName(m_name, m_number));
        if (renameToFreeName(m_path, path)) {
            m_path = path;
            return path;
        }
        if (!isTaken(path))
            return std::nullopt;
    }
    return std::nullopt;
}

void UpdateFile::discard() {
    const QMutexLocker lock(&m_mutex);
    m_fate = Fate::discarded;
    if (!m_path.isEmpty())
        QFile::remove(m_path);
    m_path.clear();
}

void UpdateFile::keep() {
    const QMutexLocker lock(&m_mutex);
    m_fate = Fate::kept;
}

bool UpdateFile::isAt(const QString& path) {
    const QMutexLocker lock(&m_mutex);
    if (m_fate == Fate::discarded) {
        QFile::remove(path);
        return false;
    }
    m_path = path;
    return true;
}

} // namespace orvane
