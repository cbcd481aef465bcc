// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/BackgroundThreads.h"
#include "streaming/ladder/Rung.h"
#include "streaming/tool/YtDlpCommand.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvane {

/// A small file that keeps, from one run to the next, the rung that has worked and the yt-dlp it
/// has worked with. Owned by the ladder; main thread, but the file is written on another one. A
/// file that cannot be read or written is the same as none.
class LadderMemory {
public:
    struct Entry {
        Rung rung = Rung::usual;
        YtDlpCommand command;
        /// Empty for the usual rung.
        QString version;

        friend bool operator==(const Entry&, const Entry&) = default;
    };

    /// An empty path keeps the entry for this run only.
    explicit LadderMemory(QString path);

    /// Reads the file at the first call.
    [[nodiscard]] const std::optional<Entry>& entry();
    /// Nullopt removes the file.
    void set(std::optional<Entry> entry);

    [[nodiscard]] static QByteArray toJson(const Entry& entry);
    [[nodiscard]] static std::optional<Entry> fromJson(const QByteArray& json);

private:
    QString m_path;
    bool m_isRead = false;
    std::optional<Entry> m_entry;
    BackgroundThreads m_writer{1}; ///< One thread, so that the last write wins.
};

} // namespace orvane
