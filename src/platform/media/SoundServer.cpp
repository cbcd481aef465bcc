// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/SoundServer.h"

#include "base/Logging.h"
#include "platform/media/MpvInstance.h"
#include "platform/media/MpvTeardownQueue.h"

#include <QFuture>
#include <QPointer>

#include <mpv/client.h>

#include <memory>
#include <utility>

namespace orvane {

SoundServer::SoundServer(MpvTeardownQueue& teardown) : m_teardown(teardown) {
    m_limit.setSingleShot(true);
    m_limit.setInterval(answerLimit);
    connect(&m_limit, &QTimer::timeout, this, [this] { setSilent(true); });
}

SoundServer::~SoundServer() = default;

void SoundServer::suspect() {
    if (std::exchange(m_isAsking, true))
        return;
    m_makers
        .run([] { return MpvInstance::makeHandle(VideoOutput::software, MpvInstance::Sound::on); })
        .then(this, [this](mpv_handle* handle) { ask(handle); });
}

void SoundServer::ask(mpv_handle* handle) {
    if (handle == nullptr) {
        m_isAsking = false;
        return;
    }
    m_limit.start();
    // mpv fills the list by asking the server, and can be destroyed only afterwards.
    mpv_get_property_async(handle, 0, "audio-device-list", MPV_FORMAT_NODE);
    m_teardown.enqueue(std::make_unique<MpvInstance>(handle), MpvTeardownQueue::Share::none,
                       [self = QPointer(this)] {
                           if (self)
                               self->answered();
                       });
}

void SoundServer::answered() {
    m_isAsking = false;
    if (m_limit.isActive()) {
        m_limit.stop();
        setSilent(false);
    } else {
        suspect();
    }
}

void SoundServer::setSilent(bool isSilent) {
    if (std::exchange(m_isSilent, isSilent) == isSilent)
        return;
    if (isSilent) {
        qCWarning(logPlayer, "The sound server does not answer");
        m_teardown.setAside();
        Q_EMIT fellSilent();
    } else {
        qCInfo(logPlayer, "The sound server answers again");
        Q_EMIT answersAgain();
    }
}

void SoundWatch::asked(TimePoint now) {
    if (!m_askedAt)
        m_askedAt = now;
}

void SoundWatch::answered(std::optional<double> position, Advance advance, TimePoint now) {
    m_askedAt.reset();
    if (!position || advance == Advance::unexpected || position != m_position)
        m_standsSince.reset();
    else if (!m_standsSince)
        m_standsSince = now;
    m_position = position;
}

bool SoundWatch::isSuspicious(TimePoint now) const {
    const auto isLong = [now](const std::optional<TimePoint>& since) {
        return since && now - *since >= limit;
    };
    return isLong(m_askedAt) || isLong(m_standsSince);
}

} // namespace orvane
