// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/UserDefaults.h"

#include "base/FileDescriptor.h"
#include "base/Logging.h"
#include "base/ReplaceFile.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMutexLocker>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <limits>
#include <thread>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Much longer than a write takes. Another copy that was suspended while holding the lock delays
/// only the writer thread, by this much.
constexpr std::chrono::milliseconds lockTimeout{2000};
constexpr std::chrono::milliseconds lockPollTime{2};
/// Bytes; far more than the preferences take.
constexpr qint64 longestFile = 64LL * 1024 * 1024;

/// Excludes other writers while it lives. The kernel drops the lock when the process dies;
/// QLockFile can leave a stale lock behind that blocks all copies for half a minute.
class FileLock {
public:
    explicit FileLock(const QString& path)
        : m_descriptor(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                              S_IRUSR | S_IWUSR)) {
        const QDeadlineTimer deadline(lockTimeout);
        while (m_descriptor.isOpen() && !m_isHeld && !deadline.hasExpired()) {
            m_isHeld = ::flock(m_descriptor.get(), LOCK_EX | LOCK_NB) == 0;
            if (!m_isHeld)
                std::this_thread::sleep_for(lockPollTime);
        }
    }

    [[nodiscard]] bool isHeld() const { return m_isHeld; }

private:
    FileDescriptor m_descriptor;
    bool m_isHeld = false;
};

struct FileText {
    QByteArray bytes;
    /// Nullopt if the bytes are not a JSON object.
    std::optional<QJsonObject> object;
};

/// Only a regular file of a reasonable size: a pipe would be waited for, and a device may not end.
std::optional<FileText> readFile(const QString& path) {
    const FileDescriptor descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status{};
    if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0 ||
        !S_ISREG(status.st_mode) || status.st_size > longestFile)
        return std::nullopt;
    QFile file;
    if (!file.open(descriptor.get(), QIODevice::ReadOnly))
        return std::nullopt;
    FileText text{.bytes = file.read(status.st_size), .object = std::nullopt};
    const QJsonDocument document = QJsonDocument::fromJson(text.bytes);
    if (document.isObject())
        text.object = document.object();
    return text;
}

} // namespace

UserDefaults::UserDefaults(QString filePath) : m_filePath(std::move(filePath)) {}

UserDefaults::~UserDefaults() {
    synchronize();
}

QJsonValue UserDefaults::value(QLatin1StringView key) const {
    {
        const QMutexLocker lock(&m_mutex);
        const auto pending = m_pending.constFind(QString(key));
        if (pending != m_pending.constEnd())
            return pending->value;
    }
    const FileStamp stamp = currentStamp();
    if (stamp != m_stamp) {
        const std::optional<FileText> text = readFile(m_filePath);
        m_fileContents = text ? text->object.value_or(QJsonObject()) : QJsonObject();
        m_stamp = stamp;
    }
    return m_fileContents.value(key);
}

std::optional<QString> UserDefaults::string(QLatin1StringView key) const {
    const QJsonValue stored = value(key);
    return stored.isString() ? std::optional(stored.toString()) : std::nullopt;
}

std::optional<QStringList> UserDefaults::stringArray(QLatin1StringView key) const {
    const QJsonValue stored = value(key);
    if (!stored.isArray())
        return std::nullopt;
    QStringList texts;
    for (const QJsonValue& element : stored.toArray()) {
        if (!element.isString())
            return std::nullopt;
        texts.append(element.toString());
    }
    return texts;
}

std::optional<bool> UserDefaults::boolean(QLatin1StringView key) const {
    const QJsonValue stored = value(key);
    return stored.isBool() ? std::optional(stored.toBool()) : std::nullopt;
}

std::optional<double> UserDefaults::number(QLatin1StringView key) const {
    const QJsonValue stored = value(key);
    return stored.isDouble() ? std::optional(stored.toDouble()) : std::nullopt;
}

std::optional<int> UserDefaults::integer(QLatin1StringView key) const {
    const std::optional<double> stored = number(key);
    if (!stored ||
        !(*stored >= std::numeric_limits<int>::min() && *stored <= std::numeric_limits<int>::max()))
        return std::nullopt;
    return static_cast<int>(*stored);
}

void UserDefaults::set(QLatin1StringView key, const QJsonValue& value) {
    change(key, value);
}

void UserDefaults::remove(QLatin1StringView key) {
    change(key, QJsonValue(QJsonValue::Undefined));
}

void UserDefaults::synchronize() {
    scheduleWrite();
    m_writer.waitForDone();
}

void UserDefaults::change(QLatin1StringView key, const QJsonValue& value) {
    {
        const QMutexLocker lock(&m_mutex);
        m_pending.insert(QString(key), {value, ++m_changeCount});
    }
    scheduleWrite();
}

void UserDefaults::scheduleWrite() {
    const QMutexLocker lock(&m_mutex);
    if (m_writeScheduled || m_pending.isEmpty())
        return;
    m_writeScheduled = true;
    m_writer.start([this] { writePending(); });
}

void UserDefaults::writePending() {
    QHash<QString, Change> batch;
    {
        const QMutexLocker lock(&m_mutex);
        m_writeScheduled = false;
        batch = m_pending;
    }
    if (batch.isEmpty())
        return;
    const bool isWritten = mergeIntoFile(batch);
    const QMutexLocker lock(&m_mutex);
    if (!isWritten) {
        if (!std::exchange(m_hasWarned, true))
            qWarning("Cannot write %s; changes will be lost on exit", qUtf8Printable(m_filePath));
        return;
    }
    m_pending.removeIf([&](const QHash<QString, Change>::iterator entry) {
        // A key that has been set again in the meantime stays pending.
        const auto written = batch.constFind(entry.key());
        return written != batch.constEnd() && written->number == entry.value().number;
    });
}

bool UserDefaults::mergeIntoFile(const QHash<QString, Change>& changes) const {
    QDir().mkpath(QFileInfo(m_filePath).absolutePath());
    const FileLock fileLock(m_filePath + u".lock"_s);
    if (!fileLock.isHeld()) {
        qCWarning(logSettings, "cannot lock %s", qUtf8Printable(m_filePath));
        return false;
    }

    const std::optional<FileText> current = readFile(m_filePath);
    if (!current && QFileInfo::exists(m_filePath)) {
        qCWarning(logSettings, "cannot read %s", qUtf8Printable(m_filePath));
        return false;
    }
    if (current && !current->object && !setAside(current->bytes))
        return false;

    QJsonObject merged = current ? current->object.value_or(QJsonObject()) : QJsonObject();
    for (auto change = changes.constBegin(); change != changes.constEnd(); ++change) {
        if (change->value.isUndefined())
            merged.remove(change.key());
        else
            merged.insert(change.key(), change->value);
    }
    return replaceFile(m_filePath, QJsonDocument(merged).toJson());
}

bool UserDefaults::setAside(const QByteArray& bytes) const {
    const QString path = m_filePath + u".bad"_s;
    const bool isSaved = replaceFile(path, bytes);
    qCWarning(logSettings, "%s is not a JSON object; %s %s", qUtf8Printable(m_filePath),
              isSaved ? "saved it as" : "cannot save it as", qUtf8Printable(path));
    return isSaved;
}

UserDefaults::FileStamp UserDefaults::currentStamp() const {
    struct stat status{};
    if (::stat(QFile::encodeName(m_filePath).constData(), &status) != 0)
        return {};
    const auto nanoseconds = [](const timespec& time) {
        return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
    };
    return {.inode = status.st_ino,
            .size = status.st_size,
            .modifiedNs = nanoseconds(status.st_mtim),
            .changedNs = nanoseconds(status.st_ctim)};
}

} // namespace orvane
