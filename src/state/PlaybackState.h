// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"

#include <QString>

#include <variant>

namespace orvane {

/// The state of playback, each alternative with its data.
namespace PlaybackState {
struct Idle {};
struct Loading {
    Channel channel;
};
struct Playing {
    Channel channel;
};
struct Error {
    Channel channel;
    /// Shown to the user.
    QString message;
};
using Value = std::variant<Idle, Loading, Playing, Error>;
} // namespace PlaybackState

/// The transport command in effect, whatever its outcome: it is `playing` also while a channel
/// loads or has failed.
enum class Transport { stopped, playing, paused };

} // namespace orvane
