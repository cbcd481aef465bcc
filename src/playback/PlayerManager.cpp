// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/PlayerManager.h"

#include "base/Clock.h"
#include "base/Logging.h"
#include "base/TaskScope.h"
#include "state/AppState.h"
#include "streaming/StreamResolver.h"
#include "streaming/ladder/StreamFailure.h"

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// What follows a command that was cut off waits for this long, so that a burst of commands does
/// not start a yt-dlp for each of them.
constexpr std::chrono::milliseconds settlingTime{200};

} // namespace

bool isRefusedAddress(const QString& message) {
    return message.contains(u"403"_s) || message.contains(u"forbidden"_s, Qt::CaseInsensitive) ||
           message.contains(u"permission"_s, Qt::CaseInsensitive);
}

PlayerManager::PlayerManager(AppState& state, const ChannelRegistry& registry,
                             StreamResolver& resolver, MediaPlayerFactory& players, Clock& clock,
                             TaskScope& tasks)
    : m_state(state),
      m_registry(registry),
      m_resolver(resolver),
      m_players(players),
      m_clock(clock),
      m_tasks(tasks) {}

PlayerManager::~PlayerManager() = default;

void PlayerManager::setPlayerView(VideoSurface* view) {
    m_playerView = view;
}

void PlayerManager::play(const Channel& channel) {
    qCInfo(logPlayer, "%s: opening", qUtf8Printable(channel.id()));
    cutOff();
    // The old player goes on under the overlay until the new one is ready, but is no longer
    // observed: its failure must not take the user back to the channel they left.
    m_playerItemObserver.reset();
    m_didAutoRetry = false;
    m_state.setLivePosition({});
    m_state.setLoading(channel);
    m_state.setCurrentChannel(channel);
    m_state.setTransport(Transport::playing);
    m_tasks.spawn(load(channel, m_currentTask.restart()));
}

void PlayerManager::cutOff() {
    if (m_currentTask.isActive())
        m_lastCutOff = m_clock.sinceBoot();
    m_currentTask.cancel();
}

QCoro::Task<> PlayerManager::settle(std::stop_token stop) {
    if (!m_lastCutOff)
        co_return;
    const std::chrono::milliseconds rest = *m_lastCutOff + settlingTime - m_clock.sinceBoot();
    if (rest > std::chrono::milliseconds::zero())
        co_await m_clock.sleep(rest, stop);
}

QCoro::Task<> PlayerManager::load(Channel channel, std::stop_token stop) {
    co_await settle(stop);
    if (stop.stop_requested())
        co_return;
    std::unique_ptr<MediaPlayerFactory::Standby> standby = m_players.standBy();
    const Resolution resolution = m_state.resolution();
    const StreamResolver::Result url = co_await m_resolver.resolve(channel, resolution, stop);
    if (stop.stop_requested())
        co_return;
    if (!url) {
        m_currentTask.finish();
        fail(channel, errorDescription(url.error()));
        co_return;
    }
    const StreamAddress address = *url;
    co_await load(address, channel, std::move(standby), stop);
}

QCoro::Task<> PlayerManager::load(StreamAddress address, Channel channel,
                                  std::unique_ptr<MediaPlayerFactory::Standby> standby,
                                  std::stop_token stop) {
    std::unique_ptr<MediaPlayer> player =
        co_await m_players.make(address, std::move(standby), stop);
    if (stop.stop_requested())
        co_return;
    m_currentTask.finish();
    if (player)
        open(std::move(player), address, channel);
    else
        fail(channel, u"Playback failed"_s);
}

void PlayerManager::open(std::unique_ptr<MediaPlayer> player, const StreamAddress& address,
                         const Channel& channel) {
    if (m_player)
        m_player->pause();
    player->setMuted(m_state.isMuted());
    player->setVolume(m_state.volume());
    player->setBufferLength(m_state.bufferLength());
    player->setPicture(m_state.isSoundOnly() ? MediaPlayer::Picture::off
                                             : MediaPlayer::Picture::shown);
    m_player = std::move(player);
    if (m_playerView != nullptr)
        m_playerView->setPlayer(m_player.get());
    m_playerItemObserver = std::make_unique<QObject>();
    QObject::connect(
        m_player.get(), &MediaPlayer::statusChanged, m_playerItemObserver.get(),
        [this, channel] { handleStatus(channel); }, Qt::QueuedConnection);
    QObject::connect(
        m_player.get(), &MediaPlayer::livePositionChanged, m_playerItemObserver.get(), [this] {
            const MediaPlayer::LivePosition now = m_player->livePosition();
            m_state.setLivePosition({.behind = now.behind, .canGoBack = now.canGoBack});
        });
    m_state.setLivePosition({});
    QObject::connect(
        m_player.get(), &MediaPlayer::soundLost, m_playerItemObserver.get(),
        [this, address, channel] {
            // The picture goes on, without an overlay, as soon as the next player has one.
            qCInfo(logPlayer, "%s: opening without sound", qUtf8Printable(channel.id()));
            m_tasks.spawn(load(address, channel, m_players.standBy(), m_currentTask.restart()));
        },
        Qt::QueuedConnection);
    resume();
}

void PlayerManager::handleStatus(Channel channel) {
    switch (m_player->status()) {
    case MediaPlayer::Status::readyToPlay:
        qCInfo(logPlayer, "%s: playing", qUtf8Printable(channel.id()));
        m_resolver.played(channel);
        m_state.setPlaying(channel);
        break;
    case MediaPlayer::Status::failed:
        handleFailure(channel);
        break;
    case MediaPlayer::Status::unknown:
        break;
    }
}

void PlayerManager::handleFailure(Channel channel) {
    const QString message = m_player->error().value_or(u"Playback failed"_s);
    // A failed player may hold much memory, and may go on taking more.
    m_playerItemObserver.reset();
    m_player.reset();
    m_state.setLivePosition({});
    if (isRefusedAddress(message) && !m_didAutoRetry) {
        // Deliberately without a limit: play() clears the flag again, so a channel that is refused
        // repeatedly is retried each time, with a fresh address.
        m_didAutoRetry = true;
        qCInfo(logPlayer, "%s: refused, retrying: %s", qUtf8Printable(channel.id()),
               qUtf8Printable(withoutSecrets(message)));
        m_resolver.refused(channel);
        retry(channel);
        return;
    }
    fail(channel, message);
}

void PlayerManager::fail(const Channel& channel, const QString& message) {
    qCWarning(logPlayer, "%s: failed: %s", qUtf8Printable(channel.id()),
              qUtf8Printable(withoutSecrets(message)));
    qCInfo(logPlayer, "shown: %s", qUtf8Printable(messageFor(message)));
    // The former channel went on under the overlay until now.
    if (m_player)
        m_player->pause();
    m_state.setError(channel, message);
}

void PlayerManager::retry(const Channel& channel) {
    m_resolver.invalidateCache(channel);
    play(channel);
}

void PlayerManager::retryCurrent() {
    // A copy: the replay assigns the current channel while it reads this one.
    if (const std::optional<Channel> channel = m_state.currentChannel())
        retry(*channel);
}

bool PlayerManager::playNeighbor(ChannelStep step, const std::optional<Channel>& from) {
    const auto channel = m_registry.enabledNeighbor(from, step);
    if (channel)
        play(*channel);
    return channel.has_value();
}

bool PlayerManager::playNeighbor(ChannelStep step) {
    return playNeighbor(step, m_state.currentChannel());
}

// A failed channel has the transport commands too: pausing it ends the attempts to open it again.
// Its player, which may be that of the former channel, stays paused.

void PlayerManager::pause() {
    if (!m_player && !hasFailed())
        return;
    if (m_player)
        m_player->pause();
    m_state.setTransport(Transport::paused);
}

void PlayerManager::resume() {
    if (!m_player && !hasFailed())
        return;
    if (!hasFailed())
        m_player->play();
    m_state.setTransport(Transport::playing);
}

void PlayerManager::togglePlayPause() {
    const bool isPlaying = hasFailed() ? m_state.transport() == Transport::playing
                                       : m_player && m_player->timeControlStatus() ==
                                                         MediaPlayer::TimeControlStatus::playing;
    if (isPlaying)
        pause();
    else
        resume();
}

bool PlayerManager::isPlaying() const {
    return m_player && std::holds_alternative<PlaybackState::Playing>(m_state.playbackState());
}

void PlayerManager::goBack(std::chrono::milliseconds distance) {
    if (isPlaying())
        m_player->goBack(distance);
}

void PlayerManager::goLive() {
    if (!isPlaying())
        return;
    m_player->goLive();
    // Nobody who goes to live wants it to stand still.
    resume();
}

void PlayerManager::setBufferLength(std::chrono::minutes length) {
    if (m_player)
        m_player->setBufferLength(length);
}

void PlayerManager::setSoundOnly(bool on) {
    m_state.setSoundOnly(on);
    if (m_player)
        m_player->setPicture(on ? MediaPlayer::Picture::off : MediaPlayer::Picture::shown);
}

bool PlayerManager::hasFailed() const {
    return std::holds_alternative<PlaybackState::Error>(m_state.playbackState());
}

bool PlayerManager::isWaiting() const {
    return m_player && m_player->timeControlStatus() == MediaPlayer::TimeControlStatus::waiting;
}

void PlayerManager::setMute(bool muted) {
    m_state.setMuted(muted);
    if (m_player)
        m_player->setMuted(muted);
}

void PlayerManager::toggleMute() {
    setMute(!m_state.isMuted());
}

void PlayerManager::setVolume(float volume) {
    const float clamped = std::max(std::min(volume, 1.0F), 0.0F);
    m_state.setVolume(clamped);
    if (m_player)
        m_player->setVolume(clamped);
}

void PlayerManager::adjustVolume(float delta) {
    setVolume(m_state.volume() + delta);
}

void PlayerManager::stop() {
    cutOff();
    m_playerItemObserver.reset();
    if (m_player)
        m_player->pause();
    m_player.reset();
    if (m_playerView != nullptr)
        m_playerView->setPlayer(nullptr);
    m_state.setLivePosition({});
    m_state.setTransport(Transport::stopped);
}

} // namespace orvane
