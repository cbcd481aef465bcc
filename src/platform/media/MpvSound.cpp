// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvSound.h"

#include "base/Logging.h"

#include <mpv/client.h>

#include <utility>

namespace orvane {

namespace {

using Sound = MpvInstance::Sound;

constexpr std::chrono::milliseconds retryTime{5000};

/// The id of the property that is requested; other objects of the player use other ids.
constexpr std::uint64_t soundReply = 200;

SoundWatch::TimePoint now() {
    return SoundWatch::TimePoint::clock::now();
}

} // namespace

MpvSound::MpvSound(const MpvInstance& instance, Sound sound, SoundServer& server)
    : m_instance(instance), m_server(server), m_sound(sound) {
    m_checkTimer.setInterval(SoundWatch::checkInterval);
    connect(&m_checkTimer, &QTimer::timeout, this, &MpvSound::check);
    m_retryTimer.setInterval(retryTime);
    connect(&m_retryTimer, &QTimer::timeout, this, [this] { m_instance.command({"ao-reload"}); });
    connect(&m_server, &SoundServer::fellSilent, this, &MpvSound::lose);
    connect(&m_server, &SoundServer::answersAgain, this, &MpvSound::regain);
}

void MpvSound::opening() {
    m_isOpening = true;
    m_checkTimer.start();
}

void MpvSound::stop() {
    m_isOpening = false;
    m_checkTimer.stop();
    m_retryTimer.stop();
}

bool MpvSound::mayHang() const {
    return m_sound == Sound::on && m_server.isSilent();
}

void MpvSound::check() {
    // Without an output nothing can hold it up, except while one is being opened.
    const bool mayWait = m_isHeard || m_retryTimer.isActive() || m_isOpening;
    if (m_sound == Sound::off || !m_isWanted || !mayWait)
        return;
    if (!m_watch.isSuspicious(now())) {
        m_watch.asked(now());
        m_instance.requestNumber("audio-pts", soundReply);
    } else if (m_server.isSilent()) {
        lose();
    } else {
        m_server.suspect();
    }
}

bool MpvSound::handleReply(const mpv_event& reply) {
    if (reply.reply_userdata != soundReply)
        return false;
    using Advance = SoundWatch::Advance;
    m_watch.answered(MpvInstance::numberIn(reply),
                     m_isHeard && m_isAdvancing ? Advance::expected : Advance::unexpected, now());
    return true;
}

void MpvSound::lose() {
    if (m_sound == Sound::off || !m_checkTimer.isActive())
        return;
    m_checkTimer.stop();
    Q_EMIT lost();
}

void MpvSound::regain() {
    if (std::exchange(m_sound, Sound::on) == Sound::off)
        m_instance.turnSoundOn();
}

void MpvSound::setOutput(std::string_view name) {
    // When the audio server ends, mpv falls back to the null output and stays there. A machine that
    // never had an output is left alone.
    m_isHeard = name != "null";
    if (m_isHeard) {
        m_server.hasWorked = true;
        m_retryTimer.stop();
    } else if (m_server.hasWorked && m_sound == Sound::on) {
        qCWarning(logPlayer, "The audio output is lost");
        m_retryTimer.start();
    }
}

} // namespace orvane
