// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace orvane {

/// A channel's name as it may stand in a line among others: names come from the network, and one
/// may have line breaks, thousands of characters, or marks that turn the direction of the text
/// around it. A name of a right-to-left script keeps its own direction. Any thread.
[[nodiscard]] QString plainName(const QString& name);

/// `text` for controls that would take an ampersand for the mark of a mnemonic.
[[nodiscard]] QString controlText(QString text);

} // namespace orvane
