// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"
#include "model/ChannelLookup.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace orvane {

/// Formats channels for a terminal and for scripts. Pure functions; any thread. Output for a
/// terminal contains no control characters, whatever a channel is named.
namespace ChannelText {

/// Returns a line for each channel: id, category and names, in columns.
[[nodiscard]] QString table(const QList<Channel>& channels);

/// Returns an array of objects with the string members "id", "category", "name", "arabicName" and
/// "handle".
[[nodiscard]] QByteArray json(const QList<Channel>& channels);

/// Returns why `text` names no channel, followed by a line for each channel that may be meant.
[[nodiscard]] QString explain(const QString& text, const ChannelLookup::Ambiguous& ambiguous);
[[nodiscard]] QString explain(const QString& text, const ChannelLookup::Unknown& unknown);

} // namespace ChannelText

} // namespace orvane
