// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "streaming/tool/YtDlpVersion.h"

#include <QCoroTask>
#include <QFuture>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>
#include <stop_token>

namespace orvane {

/// Finds the newest yt-dlp on the machine by asking each for its version: those in the places of
/// all users' searches, in the search path, Python's module, and Orvane's private copy, which
/// nothing else finds. A file that was asked is asked again only after it has changed. Owned by
/// `YtDlpTool`; main thread, which it never blocks. One that does not run is passed over.
class NewestYtDlp {
public:
    /// `privateCopy` is the path of the private copy; an empty one leaves it out. `stop` ends the
    /// children.
    NewestYtDlp(ToolRunner& tools, QString privateCopy, std::stop_token stop);

    /// Returns nullopt if none runs. Of two with the same version, the one that the stream resolver
    /// searches first.
    [[nodiscard]] QCoro::Task<std::optional<YtDlpCandidate>> find();

    [[nodiscard]] const QString& privateCopy() const { return m_privateCopy; }

    /// Forgets the versions, as an upgrade may change what a file runs without changing the file.
    void forget() { m_versions.clear(); }

private:
    using Version = QFuture<std::optional<QString>>;

    [[nodiscard]] QCoro::Task<QList<YtDlpCommand>> commands();
    [[nodiscard]] QCoro::Task<std::optional<QString>> version(YtDlpCommand command);

    ToolRunner& m_tools;
    QString m_privateCopy;
    std::stop_token m_stop;
    /// By the state of the file and how it is run; also those that are still being asked.
    QHash<QString, Version> m_versions;
};

} // namespace orvane
