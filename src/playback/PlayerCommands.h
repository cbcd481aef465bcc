// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "state/ChannelRegistry.h"

#include <chrono>

namespace orvane {

/// How far the shortcut and the menu item go back.
inline constexpr std::chrono::seconds usualStepBack{10};

class Channel;
class VideoSurface;

/// The commands that the views and the keyboard shortcuts give to the player. Implemented by
/// `PlayerManager`, which outlives them; main thread.
class PlayerCommands {
public:
    virtual ~PlayerCommands() = default;

    /// Where players show their video; null for nowhere. Not owned; reset before the view goes.
    virtual void setPlayerView(VideoSurface* view) = 0;

    /// Opens a channel and cancels the one that is being opened.
    virtual void play(const Channel& channel) = 0;
    /// Plays the enabled channel before or after the current one. Opens no window. Returns whether
    /// any channel is enabled.
    virtual bool playNeighbor(ChannelStep step) = 0;
    /// Opens the current channel, if there is one, with a fresh address. Opens no window.
    virtual void retryCurrent() = 0;

    /// Does nothing without a player.
    virtual void togglePlayPause() = 0;
    /// Does nothing where nothing is kept.
    virtual void goBack(std::chrono::milliseconds distance) = 0;
    virtual void goLive() = 0;
    virtual void toggleMute() = 0;
    /// The volume is clamped to 0...1.
    virtual void adjustVolume(float delta) = 0;
};

} // namespace orvane
