// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

#include <optional>

namespace orvane {

/// Where a stream can be played from: one address with picture and sound, or one for each. A value;
/// any thread.
struct StreamAddress {
    StreamAddress() = default;
    // Implicit: most streams have one address.
    StreamAddress(QUrl address) : picture(std::move(address)) {}

    /// Has the sound too, unless that is apart.
    QUrl picture;
    std::optional<QUrl> sound;

    friend bool operator==(const StreamAddress&, const StreamAddress&) = default;
};

} // namespace orvane
