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

/// Returns a file name for a download from `address`: not a path, not hidden, without control
/// characters, and short enough for suffixes. Any thread.
[[nodiscard]] QString safeFileName(const QUrl& address);

/// Returns `name` for 0, otherwise with the number before its suffixes: "a (1).tar.gz".
[[nodiscard]] QString numberedFileName(const QString& name, int number);

/// A file that is being downloaded: its name ends in ".part" until it is complete and verified. The
/// destructor deletes it unless `keep` was called. It never replaces another file and is not
/// executable. Shared by a task on the main thread and its worker threads, of which one runs at a
/// time; functions that access the disk for long are for worker threads. Functions return false or
/// nullopt on any error.
class UpdateFile {
public:
    /// Does not create the file.
    UpdateFile(QString folder, QString name);
    ~UpdateFile();
    UpdateFile(const UpdateFile&) = delete;
    UpdateFile& operator=(const UpdateFile&) = delete;

    // For worker threads.

    [[nodiscard]] bool open();
    [[nodiscard]] bool append(const QByteArray& chunk);
    /// Verifies the signature of the file on the disk.
    [[nodiscard]] bool isSigned(const UpdateKey& key, const QByteArray& signature);
    /// Gives the file its final name and returns its path.
    [[nodiscard]] std::optional<QString> finish();

    // For any thread.

    [[nodiscard]] const QString& folder() const { return m_folder; }
    /// Deletes the file under its current name and prevents it from being created again. Does not
    /// wait for a worker thread's reads and writes.
    void discard();
    /// Prevents the destructor from deleting the file.
    void keep();

private:
    enum class State { temporary, discarded, kept };

    /// Stores the path of the file that was created, or deletes it if it was discarded meanwhile.
    [[nodiscard]] bool adopt(const QString& path);

    const QString m_folder;
    const QString m_name;
    QFile m_file;     ///< Used by worker threads.
    int m_number = 0; ///< Used by worker threads: the next number to try for the name.

    QMutex m_mutex;
    State m_state = State::temporary; ///< Guarded by m_mutex.
    QString m_path;                   ///< Guarded by m_mutex; empty while there is no file.
};

} // namespace orvane
