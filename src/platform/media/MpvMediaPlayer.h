// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/LiveStreamMonitor.h"
#include "platform/media/MediaPlayer.h"
#include "platform/media/MpvInstance.h"
#include "platform/media/MpvLog.h"
#include "platform/media/MpvTeardownQueue.h"
#include "platform/media/VideoSource.h"

#include <QThreadPool>
#include <QTimer>

#include <string_view>

struct mpv_event_end_file;
struct mpv_event_property;

namespace orvane {

/// What is known of the machine's sound, by whichever player came to know it.
struct MpvSound {
    /// There is a sound server, or there was one.
    bool hasBeenHeard = false;
};

/// A `MediaPlayer` over libmpv: one handle for one address. Made by `MpvMediaPlayerFactory`; the
/// view that shows it draws through its instance. Destroying it hands the instance to the
/// teardown, so it is quick even while a server hangs.
class MpvMediaPlayer final : public MediaPlayer, private VideoSource {
    Q_OBJECT

public:
    MpvMediaPlayer(QUrl url, std::unique_ptr<MpvInstance> instance, MpvLog& log, MpvSound& sound,
                   MpvTeardownQueue& teardown);
    ~MpvMediaPlayer() override;

    [[nodiscard]] Status status() const override { return m_status; }
    [[nodiscard]] std::optional<QString> error() const override { return m_error; }
    [[nodiscard]] TimeControlStatus timeControlStatus() const override;

    void play() override;
    void pause() override;
    void setMuted(bool muted) override;
    void setVolume(float volume) override;

    [[nodiscard]] VideoSource* videoSource() override { return this; }

private:
    void expectRenderer() override;
    void createRenderer(mpv_render_param* parameters, ContextScope contextScope,
                        std::function<void()> onUpdate) override;
    [[nodiscard]] bool hasRenderer() const override { return m_instance->hasRenderContext(); }
    void stopUpdates() override { m_instance->onRenderUpdate({}); }
    [[nodiscard]] bool hasNewFrame() override { return m_instance->hasNewFrame(); }
    bool draw(mpv_render_param* parameters) override;
    void skipFrame() override;

    void handle(const mpv_event& event);
    void handleEnd(const mpv_event_end_file& end);
    void handleProperty(const mpv_event_property& property);
    void handleReply(const mpv_event& reply);
    void openIfDue();
    void becomeReadyIfDue();
    void checkMonitor();
    /// Has the position asked for while it should advance, and only then.
    void followPosition();
    /// `output` is the library's name for where the sound goes.
    void followSound(std::string_view output);
    void fail(std::optional<QString> error);

    QUrl m_url;
    std::unique_ptr<MpvInstance> m_instance;
    MpvLog& m_log;
    MpvSound& m_sound;
    MpvTeardownQueue& m_teardown;
    LiveStreamMonitor m_monitor;
    QTimer m_monitorTimer;
    /// Asks whether what plays advances.
    QTimer m_positionTimer;
    /// Runs while the sound that was there is lost.
    QTimer m_soundTimer;
    Status m_status = Status::unknown;
    std::optional<QString> m_error;
    bool m_isOpened = false;
    bool m_wantsToPlay = false;
    bool m_awaitsRenderer = false;
    bool m_hasRestarted = false;
    bool m_hasDrawnPicture = false;
    bool m_hasVideo = true;
    bool m_coreIsIdle = true;
};

/// Makes players and keeps the number of those that are being taken apart small.
class MpvMediaPlayerFactory final : public MediaPlayerFactory {
public:
    MpvMediaPlayerFactory(MpvTeardownQueue& teardown, VideoOutput output);

    [[nodiscard]] QCoro::Task<std::unique_ptr<MediaPlayer>> make(QUrl url,
                                                                 std::stop_token stop) override;

private:
    MpvLog m_log;
    MpvSound m_sound;
    MpvTeardownQueue& m_teardown;
    VideoOutput m_output;
    /// Of its own: one that others share may be full of those who wait for a bus that hangs.
    QThreadPool m_makers;
};

} // namespace orvane
