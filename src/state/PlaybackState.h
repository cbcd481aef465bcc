// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"

#include <QString>

#include <chrono>
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

/// Where in a live stream the viewer is.
struct LivePosition {
    /// The time since what is shown was live; zero while it is.
    std::chrono::milliseconds behind{};
    /// Whether something earlier is kept.
    bool canGoBack = false;

    friend bool operator==(const LivePosition&, const LivePosition&) = default;
};

/// The transport command in effect, whatever its outcome: it is `playing` also while a channel
/// loads or has failed.
enum class Transport { stopped, playing, paused };

} // namespace orvane
