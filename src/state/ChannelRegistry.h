// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"

#include <QList>

#include <optional>

namespace orvane {

class Preferences;

/// A direction through the enabled channels.
enum class ChannelStep : int { previous = -1, next = 1 };

/// Lists the channels: the built-in table followed by the channels added by the user. It caches
/// nothing and reads the preferences on every call, so callers in a loop should call `all` once.
/// Main thread. Never fails: unreadable custom channels count as none.
class ChannelRegistry {
public:
    explicit ChannelRegistry(const Preferences& preferences);

    /// Built-in channels, then custom ones in stored order. Duplicate ids are kept.
    [[nodiscard]] QList<Channel> all() const;
    /// Returns the first channel of `all` with exactly this id.
    [[nodiscard]] std::optional<Channel> channel(const QString& id) const;
    [[nodiscard]] QList<Channel> channels(ChannelCategory category) const;
    [[nodiscard]] QList<Channel> featured() const;
    /// Returns the enabled channel before or after `from`, wrapping round at both ends. If `from`
    /// is not enabled, counts from the first enabled channel. Returns nullopt if none is enabled.
    [[nodiscard]] std::optional<Channel> enabledNeighbor(const std::optional<Channel>& from,
                                                         ChannelStep step) const;

private:
    const Preferences& m_preferences;
};

} // namespace orvane
