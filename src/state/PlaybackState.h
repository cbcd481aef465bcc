// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"

#include <QString>

#include <variant>

namespace orvane {

/// What the player is doing, each state with what belongs to it.
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
    /// Shown to the person.
    QString message;
};
using Value = std::variant<Idle, Loading, Playing, Error>;
} // namespace PlaybackState

/// What the player has been told to do, whatever comes of it: a channel that loads or has failed is
/// still meant to play.
enum class Transport { stopped, playing, paused };

} // namespace orvane
