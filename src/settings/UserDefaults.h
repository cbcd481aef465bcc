// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/BackgroundThreads.h"

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QMutex>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace orvane {

/// A per-user store of typed values in one JSON file, shared safely between running copies of the
/// program. Used from one thread, normally the main one, which never waits for a write: a change is
/// visible to this object at once and to others as soon as a background thread has merged it into
/// the file. The file is replaced atomically, so it is never left half-written.
/// A file that is not a JSON object reads as empty; the next write saves it as "<name>.bad". So
/// reads what is no regular file or is larger than 64 MB, but it is left as it is. If the file
/// cannot be written, the changes are kept in memory and tried again with the next write; one
/// warning goes to standard error. The destructor waits for pending writes.
/// QSettings would access the file and wait for its lock on the main thread, and its QLockFile can
/// outlive a killed process and then block all copies for half a minute.
class UserDefaults {
public:
    explicit UserDefaults(QString filePath);
    ~UserDefaults();
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;

    /// Returns undefined if the key is absent.
    [[nodiscard]] QJsonValue value(QLatin1StringView key) const;

    /// These return nullopt if the key is absent or its value has another type.
    [[nodiscard]] std::optional<QString> string(QLatin1StringView key) const;
    [[nodiscard]] std::optional<QStringList> stringArray(QLatin1StringView key) const;
    [[nodiscard]] std::optional<bool> boolean(QLatin1StringView key) const;
    [[nodiscard]] std::optional<double> number(QLatin1StringView key) const;
    /// Truncates fractions; returns nullopt for a number outside the range of int.
    [[nodiscard]] std::optional<int> integer(QLatin1StringView key) const;

    void set(QLatin1StringView key, const QJsonValue& value);
    void remove(QLatin1StringView key);

    /// Waits until all changes so far have been written or have failed to be.
    void synchronize();

private:
    /// Identifies a version of the file.
    struct FileStamp {
        std::uint64_t inode = 0;
        std::int64_t size = -1;
        std::int64_t modifiedNs = 0;
        std::int64_t changedNs = 0;

        friend bool operator==(const FileStamp&, const FileStamp&) = default;
    };
    struct Change {
        QJsonValue value; ///< Undefined removes the key.
        std::uint64_t number = 0;
    };

    void scheduleWrite();
    void writePending();
    [[nodiscard]] bool mergeIntoFile(const QHash<QString, Change>& changes) const;
    /// Saves an unreadable file before it is replaced.
    [[nodiscard]] bool setAside(const QByteArray& bytes) const;
    [[nodiscard]] FileStamp currentStamp() const;
    void change(QLatin1StringView key, const QJsonValue& value);

    const QString m_filePath;

    mutable FileStamp m_stamp;
    mutable QJsonObject m_fileContents;

    mutable QMutex m_mutex;
    QHash<QString, Change> m_pending; ///< Guarded by m_mutex.
    std::uint64_t m_changeCount = 0;  ///< Guarded by m_mutex.
    bool m_writeScheduled = false;    ///< Guarded by m_mutex.
    bool m_hasWarned = false;         ///< Guarded by m_mutex.

    BackgroundThreads m_writer{1}; ///< Last, so that it ends before the members it uses.
};

} // namespace orvane
