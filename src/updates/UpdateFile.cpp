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

const QString partSuffix = u".part"_s;
/// Bytes; file systems allow 255.
constexpr qsizetype longestName = 180;
constexpr int maximumNumber = 1000;

/// True for dangling links too.
bool isTaken(const QString& path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

/// Never replaces a file, not even in a race, which QFile::rename can do.
bool renameToFreeName(const QString& from, const QString& to) {
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, source, AT_FDCWD, target, RENAME_NOREPLACE) == 0)
        return true;
    // Not all file systems support RENAME_NOREPLACE.
    return errno == EINVAL && ::link(source, target) == 0 && ::unlink(source) == 0;
}

/// Returns the index of the suffixes; ".tar.gz" counts as one.
qsizetype suffixesAt(const QString& name) {
    const qsizetype last = name.lastIndexOf(u'.');
    const QStringView before = QStringView(name).first(std::max<qsizetype>(last, 0));
    return before.endsWith(u".tar") ? before.size() - 4 : last;
}

} // namespace

QString safeFileName(const QUrl& address) {
    // Decoding can yield separators.
    QString name =
        oneLine(address.fileName(QUrl::FullyDecoded).replace(u'\\', u'/'), longestName * 2);
    name = name.sliced(name.lastIndexOf(u'/') + 1);
    // Shortened at the beginning, to keep the suffix.
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
    if (m_state == State::temporary)
        discard();
}

bool UpdateFile::open() {
    const QDir folder(m_folder);
    if (!folder.mkpath(u"."_s))
        return false;
    for (; m_number < maximumNumber; ++m_number) {
        const QString path = folder.filePath(numberedFileName(m_name, m_number));
        if (isTaken(path) || isTaken(path + partSuffix))
            continue;
        m_file.setFileName(path + partSuffix);
        if (m_file.open(QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered))
            return adopt(path + partSuffix);
        if (!isTaken(path + partSuffix))
            return false;
    }
    return false;
}

bool UpdateFile::append(const QByteArray& chunk) {
    return m_file.write(chunk) == chunk.size();
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
    if (m_state == State::discarded)
        return std::nullopt;
    for (; m_number < maximumNumber; ++m_number) {
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
    m_state = State::discarded;
    if (!m_path.isEmpty())
        QFile::remove(m_path);
    m_path.clear();
}

void UpdateFile::keep() {
    const QMutexLocker lock(&m_mutex);
    m_state = State::kept;
}

bool UpdateFile::adopt(const QString& path) {
    const QMutexLocker lock(&m_mutex);
    if (m_state == State::discarded) {
        QFile::remove(path);
        return false;
    }
    m_path = path;
    return true;
}

} // namespace orvane
