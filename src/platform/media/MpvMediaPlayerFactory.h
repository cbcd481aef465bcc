// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/BackgroundThreads.h"
#include "platform/media/MediaPlayer.h"
#include "platform/media/MpvInstance.h"
#include "platform/media/MpvLog.h"
#include "platform/media/SoundServer.h"
#include "platform/media/view/VideoOutput.h"

#include <QFuture>

namespace orvane {

class MpvTeardownQueue;

/// Makes players, and waits while too many former ones are still being destroyed. Main thread;
/// owned by the composition root.
class MpvMediaPlayerFactory final : public MediaPlayerFactory {
public:
    MpvMediaPlayerFactory(MpvTeardownQueue& teardown, VideoOutput output);

    [[nodiscard]] std::unique_ptr<Standby> standBy() override;
    [[nodiscard]] QCoro::Task<std::unique_ptr<MediaPlayer>>
    make(StreamAddress address, std::unique_ptr<Standby> standby, std::stop_token stop) override;

private:
    using Sound = MpvInstance::Sound;
    class HandleStandby;

    [[nodiscard]] Sound sound() const;
    [[nodiscard]] QFuture<mpv_handle*> makeHandle(Sound sound);

    MpvLog m_log;
    MpvTeardownQueue& m_teardown;
    SoundServer m_soundServer{m_teardown};
    VideoOutput m_output;
    BackgroundThreads m_makers{2};
    /// For the buffers of all players.
    BackgroundThreads m_disk{1};
};

} // namespace orvane
