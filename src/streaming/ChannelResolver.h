// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"
#include "platform/system/HostFileSystem.h"
#include "platform/system/Process.h"

#include <QByteArray>
#include <QCoroTask>
#include <QString>

#include <expected>
#include <optional>
#include <stop_token>

namespace orvane {

/// Turns what a person has typed or pasted into a channel: a handle, and the name that yt-dlp
/// reports for it. It holds no state and tries once. Owned by the composition root; main thread,
/// which it never blocks; there is no time limit.
class ChannelResolver {
public:
    struct ResolvedChannel {
        /// Without "@".
        QString handle;
        QString name;
    };
    /// The text is the person's to read.
    struct ResolveError {
        QString description;
    };
    using Result = std::expected<ResolvedChannel, ResolveError>;

    /// Without a site nothing is found.
    ChannelResolver(std::optional<Origin> site, HostFileSystem host, ProcessRunner& processes);

    /// A stop ends yt-dlp; the result then means nothing.
    [[nodiscard]] QCoro::Task<Result> resolve(QString input, std::stop_token stop);

    /// The handle in a handle with or without "@", or in a channel's address; the text itself,
    /// trimmed, where there is none.
    [[nodiscard]] static QString extractHandle(const QString& input);

    /// The channel's name in the description of a video, or nothing.
    [[nodiscard]] static std::optional<QString> channelName(const QByteArray& json);

private:
    using Name = std::expected<QString, ResolveError>;

    [[nodiscard]] QCoro::Task<Name> fetchChannelName(QString handle, std::stop_token stop);
    [[nodiscard]] QCoro::Task<QString> findYtDlp();

    std::optional<Origin> m_site;
    HostFileSystem m_host;
    ProcessRunner& m_processes;
};

} // namespace orvane
