// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/MediaPlayer.h"
#include "platform/media/MpvInstance.h"
#include "platform/media/MpvLiveBuffer.h"
#include "platform/media/MpvLog.h"
#include "platform/media/MpvSound.h"
#include "platform/media/MpvTeardownQueue.h"
#include "platform/media/live/LiveStreamMonitor.h"
#include "platform/media/live/PlayerLifecycle.h"
#include "platform/media/view/VideoSource.h"
#include "platform/system/Memory.h"

#include <QTimer>

struct mpv_event_end_file;
struct mpv_event_property;

namespace orvane {

/// A `MediaPlayer` over libmpv: one handle for one stream. Made by `MpvMediaPlayerFactory`. The
/// destructor hands the handle to the teardown queue, so it is quick even while a server does not
/// answer. Main thread.
class MpvMediaPlayer final : public MediaPlayer, private VideoSource {
    Q_OBJECT

public:
    /// `sound` is what the instance was made with.
    MpvMediaPlayer(StreamAddress address, std::unique_ptr<MpvInstance> instance,
                   MpvInstance::Sound sound, MpvLog& log, SoundServer& soundServer,
                   MpvTeardownQueue& teardown, BackgroundThreads& disk);
    ~MpvMediaPlayer() override;

    [[nodiscard]] Status status() const override;
    [[nodiscard]] std::optional<QString> error() const override { return m_lifecycle.error(); }
    [[nodiscard]] TimeControlStatus timeControlStatus() const override;

    void play() override;
    void pause() override;
    void setMuted(bool muted) override;
    void setVolume(float volume) override;
    void setBufferLength(std::chrono::minutes length) override { m_buffer.setLength(length); }
    [[nodiscard]] LivePosition livePosition() const override { return m_buffer.position(); }
    void goBack(std::chrono::milliseconds distance) override;
    void goLive() override;
    void setPicture(Picture picture) override;
    [[nodiscard]] VideoSource* videoSource() override { return this; }

private:
    void expectRenderer() override { m_lifecycle.rendererExpected(); }
    void createRenderer(mpv_render_param* parameters, ContextScope contextScope,
                        std::function<void()> onUpdate) override;
    [[nodiscard]] bool hasRenderer() const override { return m_instance->hasRenderContext(); }
    void stopUpdates() override { m_instance->onRenderUpdate({}); }
    [[nodiscard]] bool hasNewFrame() override;
    [[nodiscard]] int rotation() const override { return m_rotation; }
    void setDrawnWidth(int pixels) override;
    bool draw(mpv_render_param* parameters) override;
    void frameShown() override;

    void handle(const mpv_event& event);
    void handleEnd(const mpv_event_end_file& end);
    void handleProperty(const mpv_event_property& property);
    void handleReply(const mpv_event& reply);
    /// Acts on the phase that the lifecycle has just entered.
    void enterPhase();
    void open();
    void load();
    void applyPicture();
    /// Makes mpv play the sound of its own address along with the picture.
    void addSound(const QUrl& sound);
    /// `reason` is used if the log has none.
    void endWith(LiveStreamMonitor::End end, const QString& reason);
    void fail(std::optional<QString> error);
    void checkMonitor();
    /// Begins anew to watch how much memory the stream takes.
    void watchMemory(std::int64_t limit);
    void checkMemory();
    /// Polls the position while it should advance.
    void pollPosition();
    void chooseScaler();
    /// `degrees` is what the stream says.
    void turn(std::int64_t degrees);

    StreamAddress m_address;
    std::unique_ptr<MpvInstance> m_instance;
    MpvLog& m_log;
    MpvTeardownQueue& m_teardown;
    MpvSound m_sound;
    PlayerLifecycle m_lifecycle;
    LiveStreamMonitor m_monitor;
    /// The answers to the current poll so far.
    LiveStreamMonitor::Position m_position;
    MpvLiveBuffer m_buffer;
    Picture m_picture = Picture::shown;
    /// What the decoder has been told.
    Picture m_decoded = Picture::shown;
    /// In degrees, see `VideoSource`.
    int m_rotation = 0;
    /// Whether the view has not asked since the rotation has changed.
    bool m_hasTurned = false;
    /// In pixels; 0 while unknown.
    int m_frameWidth = 0;
    int m_drawnWidth = 0;
    bool m_isEnlarged = false;
    /// How often a later beginning of the sound was looked for.
    int m_soundSearches = 0;
    QTimer m_monitorTimer;
    QTimer m_positionTimer;
    QTimer m_memoryTimer;
    MemoryGrowth m_memory{0, 0};
    /// The value of mpv's property `core-idle`: false while it plays.
    bool m_isCoreIdle = true;
};

} // namespace orvane
