// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/ChannelLookup.h"

#include "model/EditDistance.h"

#include <algorithm>
#include <map>
#include <optional>

namespace orvane::ChannelLookup {

namespace {

constexpr qsizetype maximumSuggestions = 3;
/// Bounds the cost of the edit distance; no name is longer.
constexpr qsizetype maximumNameLength = 100;
/// Shorter parts occur in too many names.
constexpr qsizetype minimumPartLength = 3;

/// Normalises letters that look the same and folds their case, for comparison.
QString folded(const QString& text) {
    return text.trimmed().normalized(QString::NormalizationForm_KC).toCaseFolded();
}

QStringList foldedNames(const Channel& channel) {
    QStringList names{folded(channel.id()), folded(channel.nameAr()), folded(channel.nameEn())};
    names.removeAll(QString());
    return names;
}

/// Returns the edit distance to the nearest name of the channel, or nullopt if none is similar.
std::optional<qsizetype> distance(const Channel& channel, const QString& wanted) {
    std::optional<qsizetype> smallest;
    for (const QString& name : foldedNames(channel)) {
        const QString known = name.left(maximumNameLength);
        const bool isPart = wanted.size() >= minimumPartLength && known.contains(wanted);
        if (!isPart && !isLikelyTypo(wanted, known))
            continue;
        const qsizetype found = editDistance(wanted, known);
        smallest = std::min(smallest.value_or(found), found);
    }
    return smallest;
}

QList<Channel> nearest(const QList<Channel>& channels, const QString& wanted) {
    // Channels at the same distance stay in list order.
    std::multimap<qsizetype, Channel> found;
    for (const Channel& channel : channels) {
        if (const auto distanceTo = distance(channel, wanted))
            found.emplace(*distanceTo, channel);
    }
    QList<Channel> result;
    for (const auto& [distanceTo, channel] : found) {
        if (result.size() < maximumSuggestions)
            result += channel;
    }
    return result;
}

} // namespace

Result find(const QList<Channel>& channels, const QString& text) {
    const auto sameId = std::ranges::find(channels, text.trimmed(), &Channel::id);
    if (sameId != channels.end())
        return *sameId;
    const QString wanted = folded(text);
    QList<Channel> found;
    for (const Channel& channel : channels) {
        const bool isNamed =
            folded(channel.nameAr()) == wanted || folded(channel.nameEn()) == wanted;
        if (isNamed && !wanted.isEmpty() && !found.contains(channel))
            found += channel;
    }
    if (found.size() == 1)
        return found.first();
    if (!found.isEmpty())
        return Ambiguous{found};
    return Unknown{wanted.size() > maximumNameLength ? QList<Channel>()
                                                     : nearest(channels, wanted)};
}

} // namespace orvane::ChannelLookup
