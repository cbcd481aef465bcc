// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"
#include "model/ChannelLookup.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace orvane {

/// Channels as text for a terminal and for scripts. Pure functions; any thread. What a person chose
/// as a name cannot reach a terminal as anything but visible characters.
namespace ChannelText {

/// A line for each: id, category and names, in columns.
[[nodiscard]] QString table(const QList<Channel>& channels);

/// An array of objects with the members "id", "category", "name", "arabicName" and "handle", all
/// of them texts.
[[nodiscard]] QByteArray json(const QList<Channel>& channels);

/// Why `text` is not a channel, and what may have been meant; each of these on a line of its own.
[[nodiscard]] QString explain(const QString& text, const ChannelLookup::Ambiguous& ambiguous);
[[nodiscard]] QString explain(const QString& text, const ChannelLookup::Unknown& unknown);

} // namespace ChannelText

} // namespace orvane
