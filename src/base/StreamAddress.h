// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

#include <optional>
#include <utility>

namespace orvane {

/// Where a stream can be played from: one address with picture and sound, or one for each. A value;
/// any thread.
struct StreamAddress {
    StreamAddress() = default;
    // Implicit: most streams have one address.
    StreamAddress(QUrl pictureAddress, std::optional<QUrl> soundAddress = {})
        : picture(std::move(pictureAddress)), sound(std::move(soundAddress)) {}

    /// Has the sound too, unless that is apart.
    QUrl picture;
    std::optional<QUrl> sound;

    friend bool operator==(const StreamAddress&, const StreamAddress&) = default;
};

} // namespace orvane
