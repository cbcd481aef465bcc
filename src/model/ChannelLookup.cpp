// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/ChannelLookup.h"

#include "base/EditDistance.h"

#include <algorithm>
#include <map>
#include <optional>

namespace orvane::ChannelLookup {

namespace {

constexpr qsizetype mostNearest = 3;
/// Longer texts are nobody's slip, and measuring takes time.
constexpr qsizetype longestName = 100;
/// Parts of a name that are shorter are in too many names.
constexpr qsizetype shortestPart = 3;

/// Letters that look the same compare as the same, however they were typed.
QString folded(const QString& text) {
    return text.trimmed().normalized(QString::NormalizationForm_KC).toCaseFolded();
}

QStringList foldedNames(const Channel& channel) {
    QStringList names{folded(channel.id()), folded(channel.nameAr()), folded(channel.nameEn())};
    names.removeAll(QString());
    return names;
}

/// The smallest distance of its names, or nothing when none may have been meant.
std::optional<qsizetype> distance(const Channel& channel, const QString& wanted) {
    std::optional<qsizetype> smallest;
    for (const QString& name : foldedNames(channel)) {
        const QString known = name.left(longestName);
        const bool isPart = wanted.size() >= shortestPart && known.contains(wanted);
        if (!isPart && !mayBeSlip(wanted, known))
            continue;
        const qsizetype found = editDistance(wanted, known);
        smallest = std::min(smallest.value_or(found), found);
    }
    return smallest;
}

QList<Channel> nearest(const QList<Channel>& channels, const QString& wanted) {
    // Those at the same distance stay in the order of the list.
    std::multimap<qsizetype, Channel> found;
    for (const Channel& channel : channels) {
        if (const auto far = distance(channel, wanted))
            found.emplace(*far, channel);
    }
    QList<Channel> result;
    for (const auto& [far, channel] : found) {
        if (result.size() < mostNearest)
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
    return Unknown{wanted.size() > longestName ? QList<Channel>() : nearest(channels, wanted)};
}

} // namespace orvane::ChannelLookup
