// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvMediaPlayer.h"

#include <QCoroFuture>
#include <QtConcurrentRun>

#include <mpv/client.h>

#include <algorithm>
#include <clocale>
#include <string_view>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double fullVolumePercent = 100;
/// How often a sound server that has gone is looked for again.
constexpr std::chrono::milliseconds soundRetryTime{5000};
/// What is asked for its position comes back under this number.
constexpr std::uint64_t positionReply = 1;

LiveStreamMonitor::TimePoint now() {
    return std::chrono::steady_clock::now();
}

} // namespace

std::optional<QString> refusalToOpen(const QUrl& url) {
    const bool isWeb = url.scheme() == u"http" || url.scheme() == u"https";
    if (isWeb && !url.host().isEmpty())
        return std::nullopt;
    constexpr qsizetype shownLength = 80;
    return u"Not a web address: "_s + url.toString().left(shownLength);
}

MpvMediaPlayer::MpvMediaPlayer(QUrl url, std::unique_ptr<MpvInstance> instance, MpvLog& log,
                               MpvSound& sound, MpvTeardownQueue& teardown)
    : m_url(std::move(url)),
      m_instance(std::move(instance)),
      m_log(log),
      m_sound(sound),
      m_teardown(teardown) {
    m_monitorTimer.setSingleShot(true);
    connect(&m_monitorTimer, &QTimer::timeout, this, &MpvMediaPlayer::checkMonitor);
    m_positionTimer.setInterval(LiveStreamMonitor::checkInterval);
    connect(&m_positionTimer, &QTimer::timeout, this,
            [this] { m_instance->expand("${=time-pos} ${=audio-pts}", positionReply); });
    m_soundTimer.setInterval(soundRetryTime);
    connect(&m_soundTimer, &QTimer::timeout, this, [this] { m_instance->command({"ao-reload"}); });
    connect(&m_log, &MpvLog::line, this, [this](const QString& line) {
        m_monitor.logged(line, now());
        checkMonitor();
    });
    m_instance->onEvent([this](const mpv_event& event) { handle(event); });
    mpv_observe_property(m_instance->handle(), 0, "paused-for-cache", MPV_FORMAT_FLAG);
    mpv_observe_property(m_instance->handle(), 0, "core-idle", MPV_FORMAT_FLAG);
    mpv_observe_property(m_instance->handle(), 0, "vid", MPV_FORMAT_STRING);
    mpv_observe_property(m_instance->handle(), 0, "current-ao", MPV_FORMAT_STRING);
}

MpvMediaPlayer::~MpvMediaPlayer() {
    Q_EMIT closing();
    m_teardown.enqueue(std::move(m_instance));
}

MediaPlayer::TimeControlStatus MpvMediaPlayer::timeControlStatus() const {
    if (!m_wantsToPlay)
        return TimeControlStatus::paused;
    return m_coreIsIdle ? TimeControlStatus::waiting : TimeControlStatus::playing;
}

void MpvMediaPlayer::play() {
    m_wantsToPlay = true;
    openIfDue();
    m_instance->setFlag("pause", false);
    m_monitor.paused(false, now());
    followPosition();
    checkMonitor();
}

void MpvMediaPlayer::pause() {
    m_wantsToPlay = false;
    m_instance->setFlag("pause", true);
    m_monitor.paused(true, now());
    followPosition();
    checkMonitor();
}

void MpvMediaPlayer::setMuted(bool muted) {
    m_instance->setFlag("mute", muted);
}

void MpvMediaPlayer::setVolume(float volume) {
    m_instance->setNumber("volume", std::clamp(volume, 0.0F, 1.0F) * fullVolumePercent);
}

void MpvMediaPlayer::expectRenderer() {
    m_awaitsRenderer = true;
}

void MpvMediaPlayer::createRenderer(mpv_render_param* parameters, ContextScope contextScope,
                                    std::function<void()> onUpdate) {
    if (m_instance->createRenderContext(parameters, std::move(contextScope)))
        m_instance->onRenderUpdate(std::move(onUpdate));
    m_awaitsRenderer = false;
    openIfDue();
}

void MpvMediaPlayer::openIfDue() {
    if (m_isOpened || !m_wantsToPlay || m_awaitsRenderer || m_status == Status::failed)
        return;
    m_isOpened = true;
    if (std::optional<QString> refusal = refusalToOpen(m_url)) {
        // As with every other failure, whoever called is told after the call.
        QMetaObject::invokeMethod(
            this, [this, text = *std::move(refusal)] { fail(text); }, Qt::QueuedConnection);
        return;
    }
    const QByteArray address = m_url.toEncoded();
    m_instance->command({"loadfile", address.constData()});
    m_monitor.opened(now());
}

bool MpvMediaPlayer::draw(mpv_render_param* parameters) {
    const MpvInstance::Drawn drawn = m_instance->draw(parameters);
    if (drawn == MpvInstance::Drawn::frame)
        skipFrame();
    return drawn != MpvInstance::Drawn::nothing;
}

void MpvMediaPlayer::skipFrame() {
    m_hasDrawnPicture = true;
    becomeReadyIfDue();
}

void MpvMediaPlayer::becomeReadyIfDue() {
    const bool isShown = m_hasDrawnPicture || !m_hasVideo;
    if (m_status != Status::unknown || !m_hasRestarted || !isShown)
        return;
    m_status = Status::readyToPlay;
    m_monitor.pictureArrived();
    followPosition();
    checkMonitor();
    Q_EMIT statusChanged();
}

void MpvMediaPlayer::handle(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_PLAYBACK_RESTART:
        m_hasRestarted = true;
        becomeReadyIfDue();
        break;
    case MPV_EVENT_END_FILE:
        handleEnd(*static_cast<const mpv_event_end_file*>(event.data));
        break;
    case MPV_EVENT_PROPERTY_CHANGE:
        handleProperty(*static_cast<const mpv_event_property*>(event.data));
        break;
    case MPV_EVENT_COMMAND_REPLY:
        handleReply(event);
        break;
    default:
        break;
    }
    checkMonitor();
}

void MpvMediaPlayer::handleEnd(const mpv_event_end_file& end) {
    m_log.drain();
    // A stop was asked for, and a redirect is followed by another start.
    if (end.reason == MPV_END_FILE_REASON_EOF)
        fail(m_monitor.ended(LiveStreamMonitor::End::endOfStream, {}, now()).text);
    else if (end.reason == MPV_END_FILE_REASON_ERROR)
        fail(m_monitor
                 .ended(LiveStreamMonitor::End::error,
                        QString::fromUtf8(mpv_error_string(end.error)), now())
                 .text);
}

void MpvMediaPlayer::handleProperty(const mpv_event_property& property) {
    const std::string_view name = property.name;
    if (property.format == MPV_FORMAT_FLAG) {
        const bool on = *static_cast<const int*>(property.data) != 0;
        if (name == "paused-for-cache")
            m_monitor.starved(on, now());
        else if (name == "core-idle")
            m_coreIsIdle = on;
    } else if (property.format == MPV_FORMAT_STRING) {
        const std::string_view text = *static_cast<char* const*>(property.data);
        if (name == "vid") {
            m_hasVideo = text != "no";
            becomeReadyIfDue();
        } else if (name == "current-ao") {
            followSound(text);
        }
    }
}

void MpvMediaPlayer::followPosition() {
    if (m_wantsToPlay && m_status == Status::readyToPlay)
        m_positionTimer.start();
    else
        m_positionTimer.stop();
}

void MpvMediaPlayer::handleReply(const mpv_event& reply) {
    if (reply.reply_userdata != positionReply || reply.error < 0)
        return;
    const mpv_node& result = static_cast<const mpv_event_command*>(reply.data)->result;
    if (result.format == MPV_FORMAT_STRING)
        m_monitor.positioned(QString::fromUtf8(result.u.string));
}

void MpvMediaPlayer::followSound(std::string_view output) {
    // Without a server the sound goes nowhere, and the library never looks for the next one. Where
    // there was none from the start, there is nothing to look for.
    if (output != "null") {
        m_sound.hasBeenHeard = true;
        m_soundTimer.stop();
    } else if (m_sound.hasBeenHeard) {
        m_soundTimer.start();
    }
}

void MpvMediaPlayer::checkMonitor() {
    m_monitorTimer.stop();
    if (m_status == Status::failed)
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
    if (m_status == Status::failed)
        return;
    m_status = Status::failed;
    followPosition();
    m_soundTimer.stop();
    m_error = std::move(error);
    Q_EMIT statusChanged();
}

MpvMediaPlayerFactory::MpvMediaPlayerFactory(MpvTeardownQueue& teardown, VideoOutput output)
    : m_teardown(teardown), m_output(output) {
    // The next player is mostly far away, and an idle thread is of no use until then.
    m_makers.setExpiryTimeout(0);
}

QCoro::Task<std::unique_ptr<MediaPlayer>> MpvMediaPlayerFactory::make(QUrl url,
                                                                      std::stop_token stop) {
    co_await m_teardown.room(stop);
    if (stop.stop_requested())
        co_return std::unique_ptr<MediaPlayer>();
    std::setlocale(LC_NUMERIC, "C");
    const QFuture<mpv_handle*> making =
        QtConcurrent::run(&m_makers, MpvInstance::makeHandle, m_output);
    mpv_handle* handle = co_await making;
    if (handle == nullptr)
        co_return std::unique_ptr<MediaPlayer>();
    auto instance = std::make_unique<MpvInstance>(handle);
    if (stop.stop_requested()) {
        m_teardown.enqueue(std::move(instance));
        co_return std::unique_ptr<MediaPlayer>();
    }
    co_return std::make_unique<MpvMediaPlayer>(std::move(url), std::move(instance), m_log, m_sound,
                                               m_teardown);
}

} // namespace orvane
