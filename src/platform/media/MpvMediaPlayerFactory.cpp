// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvMediaPlayerFactory.h"

#include "platform/media/MpvMediaPlayer.h"
#include "platform/media/MpvTeardownQueue.h"

#include <QCoroFuture>

#include <utility>

namespace orvane {

MpvMediaPlayerFactory::MpvMediaPlayerFactory(MpvTeardownQueue& teardown, VideoOutput output)
    : m_teardown(teardown), m_output(output) {}

/// A handle that is being made or waits.
class MpvMediaPlayerFactory::HandleStandby final : public Standby {
public:
    HandleStandby(QFuture<mpv_handle*> making, Sound sound, MpvTeardownQueue& teardown)
        : m_making(std::move(making)), m_sound(sound), m_teardown(teardown) {}
    ~HandleStandby() override {
        if (m_isTaken)
            return;
        m_making.then(&m_teardown, [&teardown = m_teardown](mpv_handle* handle) {
            if (handle != nullptr)
                teardown.enqueue(std::make_unique<MpvInstance>(handle));
        });
    }

    [[nodiscard]] Sound sound() const { return m_sound; }
    [[nodiscard]] QFuture<mpv_handle*> take() {
        m_isTaken = true;
        return m_making;
    }

private:
    QFuture<mpv_handle*> m_making;
    bool m_isTaken = false;
    Sound m_sound;
    MpvTeardownQueue& m_teardown;
};

MpvInstance::Sound MpvMediaPlayerFactory::sound() const {
    return m_soundServer.isSilent() ? Sound::off : Sound::on;
}

QFuture<mpv_handle*> MpvMediaPlayerFactory::makeHandle(Sound sound) {
    return m_makers.run([this, sound] { return MpvInstance::makeHandle(m_output, sound); });
}

std::unique_ptr<MediaPlayerFactory::Standby> MpvMediaPlayerFactory::standBy() {
    if (!m_teardown.hasRoom())
        return nullptr;
    return std::make_unique<HandleStandby>(makeHandle(sound()), sound(), m_teardown);
}

QCoro::Task<std::unique_ptr<MediaPlayer>>
MpvMediaPlayerFactory::make(StreamAddress address, std::unique_ptr<Standby> standby,
                            std::stop_token stop) {
    co_await m_teardown.room(stop);
    if (stop.stop_requested())
        co_return std::unique_ptr<MediaPlayer>();
    const Sound sound = this->sound();
    auto* made = static_cast<HandleStandby*>(standby.get());
    const QFuture<mpv_handle*> making =
        made != nullptr && made->sound() == sound ? made->take() : makeHandle(sound);
    mpv_handle* handle = co_await making;
    if (handle == nullptr)
        co_return std::unique_ptr<MediaPlayer>();
    auto instance = std::make_unique<MpvInstance>(handle);
    if (stop.stop_requested()) {
        m_teardown.enqueue(std::move(instance));
        co_return std::unique_ptr<MediaPlayer>();
    }
    co_return std::make_unique<MpvMediaPlayer>(std::move(address), std::move(instance), sound,
                                               m_log, m_soundServer, m_teardown, m_disk);
}

} // namespace orvane
