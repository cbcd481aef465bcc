// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvMediaPlayer.h"

#include "base/Logging.h"

#include <mpv/client.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;
using Phase = PlayerLifecycle::Phase;

namespace {

constexpr double fullVolumePercent = 100;
/// How often the memory is looked at while a stream is opened, and while it plays. A list that does
/// not end takes some 50 MiB a second.
constexpr std::chrono::milliseconds openingMemoryCheckTime{200};
constexpr std::chrono::milliseconds playingMemoryCheckTime{1000};
constexpr std::int64_t mebibyte = 1 << 20;
/// What a stream may take until its list and its first packets are read, then until its first frame
/// is shown, for which the decoders of a large picture take much, and from then on.
constexpr std::int64_t listLimit = 400 * mebibyte;
constexpr std::int64_t decoderLimit = 1000 * mebibyte;
constexpr std::int64_t playingLimit = 400 * mebibyte;

/// The ids of the properties that a poll requests, in the order of the requests.
enum PositionReply : std::uint64_t { timeReply = 1, audioReply, startReply, pictureReply };

/// A sound that begins later than the picture is reached in steps, as its first timestamp is not
/// known before.
constexpr int soundSearchSteps = 5;
constexpr const char* soundSearchStep = "2";

LiveStreamMonitor::TimePoint now() {
    return std::chrono::steady_clock::now();
}

} // namespace

std::optional<QString> refusalToOpen(const StreamAddress& address) {
    for (const QUrl& url : {address.picture, address.sound.value_or(address.picture)}) {
        const bool isWeb = url.scheme() == u"http" || url.scheme() == u"https";
        if (!isWeb || url.host().isEmpty()) {
            qCWarning(logPlayer, "Not opened: %s", qUtf8Printable(withoutSecrets(url.toString())));
            return QString::fromLatin1(
                QT_TRANSLATE_NOOP("Failure", "The stream has no web address"));
        }
    }
    return std::nullopt;
}

MpvMediaPlayer::MpvMediaPlayer(StreamAddress address, std::unique_ptr<MpvInstance> instance,
                               MpvInstance::Sound sound, MpvLog& log, SoundServer& soundServer,
                               MpvTeardownQueue& teardown, BackgroundThreads& disk)
    : m_address(std::move(address)),
      m_instance(std::move(instance)),
      m_log(log),
      m_teardown(teardown),
      m_sound(*m_instance, sound, soundServer),
      m_buffer(*m_instance, disk) {
    m_monitorTimer.setSingleShot(true);
    connect(&m_monitorTimer, &QTimer::timeout, this, &MpvMediaPlayer::checkMonitor);
    m_positionTimer.setInterval(LiveStreamMonitor::checkInterval);
    connect(&m_positionTimer, &QTimer::timeout, this, [this] {
        // Once the picture of two streams has ended, "time-pos" follows the sound. Who is behind
        // does not need what arrives.
        const bool isLive = m_buffer.position().behind == std::chrono::milliseconds::zero();
        const char* arrived = m_address.sound && isLive ? "demuxer-cache-time" : "time-pos";
        m_instance->requestNumber(arrived, timeReply);
        m_instance->requestNumber("audio-pts", audioReply);
    });
    connect(&m_sound, &MpvSound::lost, this, &MediaPlayer::soundLost);
    m_memoryTimer.setInterval(openingMemoryCheckTime);
    connect(&m_memoryTimer, &QTimer::timeout, this, &MpvMediaPlayer::checkMemory);
    connect(&m_log, &MpvLog::line, this, [this](const QString& line) {
        m_monitor.logged(line, now());
        checkMonitor();
    });
    connect(&m_buffer, &MpvLiveBuffer::positionChanged, this, &MediaPlayer::livePositionChanged);
    m_instance->onEvent([this](const mpv_event& event) { handle(event); });
    mpv_observe_property(m_instance->handle(), 0, "paused-for-cache", MPV_FORMAT_FLAG);
    mpv_observe_property(m_instance->handle(), 0, "core-idle", MPV_FORMAT_FLAG);
    mpv_observe_property(m_instance->handle(), 0, "vid", MPV_FORMAT_STRING);
    mpv_observe_property(m_instance->handle(), 0, "current-ao", MPV_FORMAT_STRING);
    mpv_observe_property(m_instance->handle(), 0, "video-params/rotate", MPV_FORMAT_INT64);
    mpv_observe_property(m_instance->handle(), 0, "video-params/w", MPV_FORMAT_INT64);
}

MpvMediaPlayer::~MpvMediaPlayer() {
    Q_EMIT closing();
    using Share = MpvTeardownQueue::Share;
    m_teardown.enqueue(std::move(m_instance), m_sound.mayHang() ? Share::none : Share::place);
}

MediaPlayer::Status MpvMediaPlayer::status() const {
    switch (m_lifecycle.phase()) {
    case Phase::playing:
        return Status::readyToPlay;
    case Phase::failed:
        return Status::failed;
    case Phase::unopened:
    case Phase::opening:
        break;
    }
    return Status::unknown;
}

MediaPlayer::TimeControlStatus MpvMediaPlayer::timeControlStatus() const {
    if (!m_lifecycle.isWanted())
        return TimeControlStatus::paused;
    return m_isCoreIdle ? TimeControlStatus::waiting : TimeControlStatus::playing;
}

void MpvMediaPlayer::play() {
    if (m_lifecycle.play())
        enterPhase();
    m_instance->setFlag("pause", false);
    m_sound.setWanted(true);
    m_buffer.setPaused(false);
    m_monitor.paused(false, now());
    pollPosition();
    checkMonitor();
}

void MpvMediaPlayer::pause() {
    m_lifecycle.pause();
    m_instance->setFlag("pause", true);
    m_sound.setWanted(false);
    m_buffer.setPaused(true);
    m_monitor.paused(true, now());
    pollPosition();
    checkMonitor();
}

void MpvMediaPlayer::setMuted(bool muted) {
    m_instance->setFlag("mute", muted);
}

void MpvMediaPlayer::setVolume(float volume) {
    m_instance->setNumber("volume", std::clamp(volume, 0.0F, 1.0F) * fullVolumePercent);
}

void MpvMediaPlayer::createRenderer(mpv_render_param* parameters, ContextScope contextScope,
                                    std::function<void()> onUpdate) {
    if (m_instance->createRenderContext(parameters, std::move(contextScope)))
        m_instance->onRenderUpdate(std::move(onUpdate));
    if (m_lifecycle.rendererSettled())
        enterPhase();
}

bool MpvMediaPlayer::hasNewFrame() {
    const bool isNew = m_instance->hasNewFrame();
    return std::exchange(m_hasTurned, false) || isNew;
}

void MpvMediaPlayer::setDrawnWidth(int pixels) {
    m_drawnWidth = pixels;
    chooseScaler();
}

void MpvMediaPlayer::chooseScaler() {
    const bool isEnlarged = m_frameWidth > 0 && m_drawnWidth > m_frameWidth;
    if (isEnlarged != std::exchange(m_isEnlarged, isEnlarged))
        m_instance->setScaling(isEnlarged ? MpvInstance::Scaling::up : MpvInstance::Scaling::down);
}

bool MpvMediaPlayer::draw(mpv_render_param* parameters) {
    const MpvInstance::Drawn drawn = m_instance->draw(parameters);
    if (drawn == MpvInstance::Drawn::frame)
        frameShown();
    return drawn != MpvInstance::Drawn::nothing;
}

void MpvMediaPlayer::frameShown() {
    if (m_lifecycle.frameShown())
        enterPhase();
}

void MpvMediaPlayer::enterPhase() {
    switch (m_lifecycle.phase()) {
    case Phase::unopened:
        break;
    case Phase::opening:
        open();
        break;
    case Phase::playing:
        qCInfo(logPlayer, "Playing");
        m_monitor.started();
        m_sound.opened();
        m_memoryTimer.setInterval(playingMemoryCheckTime);
        watchMemory(playingLimit);
        pollPosition();
        checkMonitor();
        m_buffer.start();
        applyPicture();
        Q_EMIT statusChanged();
        break;
    case Phase::failed:
        qCWarning(logPlayer, "Failed: %s",
                  qUtf8Printable(withoutSecrets(error().value_or(u"unknown reason"_s))));
        pollPosition();
        m_memoryTimer.stop();
        m_sound.stop();
        m_buffer.stop();
        Q_EMIT statusChanged();
        break;
    }
}

void MpvMediaPlayer::open() {
    if (std::optional<QString> refusal = refusalToOpen(m_address)) {
        // Failures are always reported after the call that causes them.
        QMetaObject::invokeMethod(
            this, [this, text = *std::move(refusal)] { fail(text); }, Qt::QueuedConnection);
        return;
    }
    qCInfo(logPlayer, "Opening %s", qUtf8Printable(withoutSecrets(m_address.picture.toString())));
    if (m_address.sound)
        addSound(*m_address.sound);
    load();
    m_monitor.opened(now());
    watchMemory(listLimit);
    m_sound.opening();
}

void MpvMediaPlayer::load() {
    const QByteArray picture = m_address.picture.toEncoded();
    m_instance->command({"loadfile", picture.constData()});
}

void MpvMediaPlayer::goBack(std::chrono::milliseconds distance) {
    if (m_buffer.goBack(distance))
        m_monitor.jumped();
}

void MpvMediaPlayer::goLive() {
    if (m_lifecycle.phase() != Phase::playing)
        return;
    m_monitor.jumped();
    if (m_buffer.goLive())
        return;
    load();
    m_buffer.restart();
}

void MpvMediaPlayer::setPicture(Picture picture) {
    m_picture = picture;
    if (m_lifecycle.phase() == Phase::playing)
        applyPicture();
}

void MpvMediaPlayer::applyPicture() {
    if (m_picture == std::exchange(m_decoded, m_picture))
        return;
    m_buffer.setPicture(m_picture);
    m_instance->requestNumber("audio-pts", pictureReply);
}

void MpvMediaPlayer::addSound(const QUrl& sound) {
    qCInfo(logPlayer, "with the sound of %s", qUtf8Printable(withoutSecrets(sound.toString())));
    m_instance->setList("audio-files", sound.toEncoded());
    // The two lists begin at different times: only their own timestamps keep them in step.
    m_instance->setFlag("rebase-start-time", false);
    // mpv can seek only from the first packet that it keeps.
    m_instance->command({"set", "demuxer-max-back-bytes", "4MiB"});
    mpv_observe_property(m_instance->handle(), 0, "aid", MPV_FORMAT_STRING);
    m_monitor.expectBoth();
    m_buffer.expectBoth();
}

void MpvMediaPlayer::handle(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_FILE_LOADED:
        watchMemory(decoderLimit);
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        if (m_lifecycle.playbackStarted())
            enterPhase();
        m_buffer.poll();
        if (m_address.sound && m_soundSearches < soundSearchSteps)
            m_instance->requestNumber("audio-pts", startReply);
        break;
    case MPV_EVENT_END_FILE:
        handleEnd(*static_cast<const mpv_event_end_file*>(event.data));
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        handleProperty(*static_cast<const mpv_event_property*>(event.data));
        break;
    case MPV_EVENT_GET_PROPERTY_REPLY:
        handleReply(event);
        break;
    default:
        break;
    }
    checkMonitor();
}

void MpvMediaPlayer::handleEnd(const mpv_event_end_file& end) {
    // Other reasons are no failure: a stop was requested, and a redirect is followed by a restart.
    if (end.reason == MPV_END_FILE_REASON_EOF)
        endWith(LiveStreamMonitor::End::endOfStream, {});
    else if (end.reason == MPV_END_FILE_REASON_ERROR)
        endWith(LiveStreamMonitor::End::error, QString::fromUtf8(mpv_error_string(end.error)));
}

void MpvMediaPlayer::endWith(LiveStreamMonitor::End end, const QString& reason) {
    // The log may have a better reason.
    m_log.drain();
    fail(m_monitor.ended(end, reason, now()).text);
}

void MpvMediaPlayer::handleProperty(const mpv_event_property& property) {
    const std::string_view name = property.name;
    if (property.format == MPV_FORMAT_FLAG) {
        const bool on = *static_cast<const int*>(property.data) != 0;
        if (name == "paused-for-cache")
            m_monitor.starved(on, now());
        else if (name == "core-idle") {
            m_isCoreIdle = on;
            m_buffer.setAdvancing(!on);
            m_sound.setAdvancing(!on);
        }
    } else if (property.format == MPV_FORMAT_INT64) {
        const std::int64_t number = *static_cast<const std::int64_t*>(property.data);
        if (name == "video-params/rotate") {
            turn(number);
        } else {
            m_frameWidth = static_cast<int>(number);
            chooseScaler();
        }
    } else if (property.format == MPV_FORMAT_STRING) {
        const std::string_view text = *static_cast<char* const*>(property.data);
        if (name == "vid") {
            if (m_lifecycle.tracksSelected(text != "no"))
                enterPhase();
        } else if (name == "aid" && text == "no") {
            // mpv itself would go on without the sound.
            m_instance->command({"stop"});
            endWith(LiveStreamMonitor::End::error,
                    QString::fromLatin1(QT_TRANSLATE_NOOP("Failure", "No sound arrived")));
        } else if (name == "current-ao") {
            m_sound.setOutput(text);
        }
    }
}

void MpvMediaPlayer::turn(std::int64_t degrees) {
    constexpr int quarter = 90;
    constexpr int turnQuarters = 4;
    const auto quarters = static_cast<int>((degrees + quarter / 2) / quarter);
    const int rotation = quarters % turnQuarters * quarter;
    if (rotation == std::exchange(m_rotation, rotation))
        return;
    m_hasTurned = true;
    m_instance->requestRenderUpdate();
}

void MpvMediaPlayer::handleReply(const mpv_event& reply) {
    if (m_buffer.handleReply(reply) || m_sound.handleReply(reply))
        return;
    const std::optional<double> seconds = MpvInstance::numberIn(reply);
    if (reply.reply_userdata == timeReply) {
        m_position.time = seconds;
    } else if (reply.reply_userdata == audioReply) {
        m_position.audio = seconds;
        m_monitor.positioned(m_position);
    } else if (reply.reply_userdata == pictureReply) {
        using Decoding = MpvInstance::Decoding;
        m_instance->setDecoding(
            m_decoded == Picture::off ? Decoding::keyFrames : Decoding::allFrames, seconds);
    } else if (reply.reply_userdata == startReply && !seconds) {
        // mpv would show the picture in silence until the sound begins, stop it there, and
        // let the sound run ahead for seconds.
        ++m_soundSearches;
        m_instance->command({"seek", soundSearchStep, "relative+keyframes"});
    }
}

void MpvMediaPlayer::watchMemory(std::int64_t limit) {
    m_memory = MemoryGrowth(usedMemory(), limit);
    m_memoryTimer.start();
}

void MpvMediaPlayer::checkMemory() {
    if (!m_memory.hasReachedLimit(usedMemory()))
        return;
    m_instance->command({"stop"});
    fail(QString::fromLatin1(QT_TRANSLATE_NOOP("Failure", "The stream takes too much memory")));
}

void MpvMediaPlayer::pollPosition() {
    if (m_lifecycle.shouldAdvance())
        m_positionTimer.start();
    else
        m_positionTimer.stop();
}

void MpvMediaPlayer::checkMonitor() {
    m_monitorTimer.stop();
    if (m_lifecycle.phase() == Phase::failed)
        return;
    const LiveStreamMonitor::TimePoint time = now();
    if (const std::optional<LiveStreamMonitor::Failure> failure = m_monitor.dueFailure(time)) {
        m_instance->command({"stop"});
        fail(failure->text);
    } else if (const auto deadline = m_monitor.deadline()) {
        m_monitorTimer.start(std::chrono::ceil<std::chrono::milliseconds>(*deadline - time));
    }
}

void MpvMediaPlayer::fail(std::optional<QString> error) {
    if (m_lifecycle.fail(std::move(error)))
        enterPhase();
}

} // namespace orvane
