// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "updates/UpdateSignature.h"

#include <QByteArray>
#include <QFile>
#include <QMutex>
#include <QString>
#include <QUrl>

#include <optional>

namespace orvane {

/// The name under which what lies at `address` is kept: one that is no path, not hidden, can be
/// read, and leaves room for what is appended to it. Any thread.
[[nodiscard]] QString safeFileName(const QUrl& address);

/// `name` for the first attempt, then with a number before its suffixes: "a (1).tar.gz".
[[nodiscard]] QString numberedFileName(const QString& name, int number);

/// A file that is being downloaded: it has ".part" at the end of its name until it is whole and
/// trusted, and is gone when this object goes, unless it is kept. It never takes the place of
/// another file and cannot be executed. Shared by a task of the main thread and the worker threads
/// that it has do the work, one after the other: all that may wait for the disk is said to. Faults
/// are told as no.
class UpdateFile {
public:
    /// Touches nothing yet.
    UpdateFile(QString folder, QString name);
    ~UpdateFile();
    UpdateFile(const UpdateFile&) = delete;
    UpdateFile& operator=(const UpdateFile&) = delete;

    // For worker threads.

    [[nodiscard]] bool open();
    [[nodiscard]] bool append(const QByteArray& piece);
    /// Whether the whole file, as it lies on the disk, is signed.
    [[nodiscard]] bool isSigned(const UpdateKey& key, const QByteArray& signature);
    /// Gives the file its final name; its path.
    [[nodiscard]] std::optional<QString> finish();

    // For any thread.

    [[nodiscard]] const QString& folder() const { return m_folder; }
    /// Deletes the file whatever its name is by now, and lets no other come into being. Does not
    /// wait for what a worker is doing.
    void discard();
    /// The file outlives this object.
    void keep();

private:
    enum class Fate { open, discarded, kept };

    /// Remembers where the file has come into being, or deletes it if it is not wanted any more.
    [[nodiscard]] bool isAt(const QString& path);

    const QString m_folder;
    const QString m_name;
    QFile m_file;     ///< The worker's.
    int m_number = 0; ///< The worker's: how many names were taken already.

    QMutex m_mutex;
    Fate m_fate = Fate::open; ///< Guarded by m_mutex.
    QString m_path;           ///< Guarded by m_mutex; empty while there is no file.
};

} // namespace orvane
