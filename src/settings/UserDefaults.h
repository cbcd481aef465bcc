// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QLatin1StringView>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <QThreadPool>

#include <cstdint>
#include <optional>

namespace orvane {

/// A per-user store of typed values in one JSON file, shared safely between running copies of the
/// program. Reads and writes come from one thread, normally the main one, and never wait for the
/// disk's writes: a write is visible to this object at once and to others as soon as a background
/// thread has merged it into the file. The file is replaced as a whole, so a kill at any moment
/// leaves the old or the new one.
/// A file that is no JSON object reads as empty and is set aside as "<name>.bad" by the next write.
/// When the file cannot be written, the values live on in memory and are tried again with the next
/// write; the standard error says so once. The destructor waits for what is still to be written.
class UserDefaults {
public:
    explicit UserDefaults(QString filePath);
    ~UserDefaults();
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;

    /// Undefined when the key is absent.
    [[nodiscard]] QJsonValue value(QLatin1StringView key) const;

    /// Each gives nothing when the key is absent or its value is of another kind.
    [[nodiscard]] std::optional<QString> string(QLatin1StringView key) const;
    [[nodiscard]] std::optional<QStringList> stringArray(QLatin1StringView key) const;
    [[nodiscard]] std::optional<bool> boolean(QLatin1StringView key) const;
    [[nodiscard]] std::optional<double> number(QLatin1StringView key) const;
    /// Fractions are cut off; a number outside the range of int gives nothing.
    [[nodiscard]] std::optional<int> integer(QLatin1StringView key) const;

    void set(QLatin1StringView key, const QJsonValue& value);
    void remove(QLatin1StringView key);

    /// Waits until everything set so far is in the file or has failed to get there.
    void synchronize();

private:
    /// What tells one version of the file from another.
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
    [[nodiscard]] FileStamp currentStamp() const;
    void change(QLatin1StringView key, const QJsonValue& value);

    const QString m_filePath;

    mutable FileStamp m_stamp;
    mutable QJsonObject m_fileContents;

    mutable QMutex m_mutex;
    QHash<QString, Change> m_pending; ///< Guarded by m_mutex.
    std::uint64_t m_changeCount = 0;  ///< Guarded by m_mutex.
    bool m_writeScheduled = false;    ///< Guarded by m_mutex.
    bool m_hasComplained = false;     ///< Guarded by m_mutex.

    QThreadPool m_writer; ///< One thread; last, so that it ends before what it uses.
};

} // namespace orvane
