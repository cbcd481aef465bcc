// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"

#include <QList>
#include <QString>

#include <variant>

namespace orvane {

/// What a text that a person typed for a channel stands for. Values and a pure function; any
/// thread.
namespace ChannelLookup {

struct Ambiguous {
    /// At least two, in the order of the list.
    QList<Channel> candidates;
};
struct Unknown {
    /// Those that may have been meant, the nearest first; few, or none.
    QList<Channel> nearest;
};
using Result = std::variant<Channel, Ambiguous, Unknown>;

/// The channel with exactly this id, or else the one with this Arabic or English name in any letter
/// case; spaces around the text do not count.
[[nodiscard]] Result find(const QList<Channel>& channels, const QString& text);

} // namespace ChannelLookup

} // namespace orvane
