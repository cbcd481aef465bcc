// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/Channel.h"
#include "playback/PlayerCommands.h"

#include <QStringList>

namespace orvane::test {

/// Records the commands it is given.
class RecordingPlayer final : public PlayerCommands {
public:
    QStringList calls;
    VideoSurface* view = nullptr;

    [[nodiscard]] QStringList takeCalls() { return std::exchange(calls, {}); }

    void setPlayerView(VideoSurface* surface) override { view = surface; }
    void play(const Channel& channel) override { calls += QStringLiteral("play ") + channel.id(); }
    bool playNeighbor(ChannelStep step) override {
        calls += step == ChannelStep::next ? QStringLiteral("next") : QStringLiteral("previous");
        return true;
    }
    void retryCurrent() override { calls += QStringLiteral("retry"); }
    void togglePlayPause() override { calls += QStringLiteral("play/pause"); }
    void goBack(std::chrono::milliseconds distance) override {
        calls += QStringLiteral("back %1").arg(distance.count());
    }
    void goLive() override { calls += QStringLiteral("live"); }
    void toggleMute() override { calls += QStringLiteral("mute"); }
    void adjustVolume(float delta) override {
        calls += QStringLiteral("volume %1").arg(double(delta), 0, 'f', 2);
    }
};

} // namespace orvane::test
