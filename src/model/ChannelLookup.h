// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"

#include <QList>
#include <QString>

#include <variant>

namespace orvane {

/// Finds the channel that a text typed by the user refers to. Values and a pure function; any
/// thread.
namespace ChannelLookup {

struct Ambiguous {
    /// At least two, in list order.
    QList<Channel> candidates;
};
struct Unknown {
    /// Suggestions, the nearest first; may be empty.
    QList<Channel> nearest;
};
using Result = std::variant<Channel, Ambiguous, Unknown>;

/// Returns the channel with exactly this id, or else the one with this Arabic or English name,
/// ignoring case and surrounding spaces.
[[nodiscard]] Result find(const QList<Channel>& channels, const QString& text);

} // namespace ChannelLookup

} // namespace orvane
