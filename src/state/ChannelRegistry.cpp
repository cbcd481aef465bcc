// SPDX-License-Identifier: GPL-3.0-or-later
#include "state/ChannelRegistry.h"

#include "model/BuiltInChannels.h"
#include "settings/Preferences.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane {

ChannelRegistry::ChannelRegistry(const Preferences& preferences) : m_preferences(preferences) {}

QList<Channel> ChannelRegistry::all() const {
    return builtInChannels() + m_preferences.customChannels();
}

std::optional<Channel> ChannelRegistry::channel(const QString& id) const {
    const QList<Channel> channels = all();
    const auto found = std::ranges::find(channels, id, &Channel::id);
    return found == channels.end() ? std::nullopt : std::optional(*found);
}

QList<Channel> ChannelRegistry::channels(ChannelCategory category) const {
    QList<Channel> members;
    std::ranges::copy_if(all(), std::back_inserter(members),
                         [category](const Channel& c) { return c.category() == category; });
    return members;
}

QList<Channel> ChannelRegistry::featured() const {
    return channels(ChannelCategory::featured);
}

std::optional<Channel> ChannelRegistry::enabledNeighbor(const std::optional<Channel>& from,
                                                        ChannelStep step) const {
    const QSet<QString> enabled = m_preferences.enabledChannelIDs();
    QList<Channel> channels = all();
    channels.removeIf([&](const Channel& channel) { return !enabled.contains(channel.id()); });
    if (channels.isEmpty())
        return std::nullopt;
    const qsizetype found = from ? channels.indexOf(*from) : -1;
    const qsizetype count = channels.size();
    return channels.at((qMax(found, 0) + std::to_underlying(step) + count) % count);
}

} // namespace orvane
