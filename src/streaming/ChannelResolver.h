// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Origin.h"

#include <QByteArray>
#include <QCoroTask>
#include <QString>

#include <expected>
#include <optional>
#include <stop_token>

namespace orvane {

class YtDlpTool;

/// Turns the text that the user has typed or pasted into a channel: a handle, and the name that
/// yt-dlp reports for it. Keeps no state, tries once and installs nothing. Owned by the composition
/// root; main thread, which it never blocks; there is no time limit.
class ChannelResolver {
public:
    struct ResolvedChannel {
        /// Without "@".
        QString handle;
        QString name;
    };
    /// The text is meant for the user.
    struct ResolveError {
        QString description;
    };
    using Result = std::expected<ResolvedChannel, ResolveError>;

    /// Without a site no channel is found.
    ChannelResolver(std::optional<Origin> site, YtDlpTool& tool);

    /// A stop ends yt-dlp; the result is then meaningless.
    [[nodiscard]] QCoro::Task<Result> resolve(QString input, std::stop_token stop);

    /// Returns the handle in a handle with or without "@", or in a channel's address; otherwise the
    /// trimmed text itself.
    [[nodiscard]] static QString extractHandle(const QString& input);

    /// Returns the channel's name from yt-dlp's description of a video, or nullopt.
    [[nodiscard]] static std::optional<QString> channelName(const QByteArray& json);

private:
    using Name = std::expected<QString, ResolveError>;

    [[nodiscard]] QCoro::Task<Name> fetchChannelName(QString handle, std::stop_token stop);

    std::optional<Origin> m_site;
    YtDlpTool& m_tool;
};

} // namespace orvane
