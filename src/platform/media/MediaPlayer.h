// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/StreamAddress.h"

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>

namespace orvane {

class VideoSource;

/// Plays one stream. Owned by the player manager; main thread, which no call here
/// blocks. The first `play` opens the stream. `statusChanged` reports the outcome; a failed player
/// stays failed.
class MediaPlayer : public QObject {
    Q_OBJECT

public:
    enum class Status {
        unknown,
        /// The first frame is shown, or the first sound heard if there is no video.
        readyToPlay,
        /// The stream could not be opened, was refused later, stalled, or has ended, which a live
        /// stream does not do.
        failed
    };
    enum class TimeControlStatus { paused, waiting, playing };

    [[nodiscard]] virtual Status status() const = 0;
    /// Returns why it failed, to be shown to the user; nullopt if it has not failed or the reason
    /// is unknown.
    [[nodiscard]] virtual std::optional<QString> error() const = 0;
    [[nodiscard]] virtual TimeControlStatus timeControlStatus() const = 0;

    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void setMuted(bool muted) = 0;
    /// From 0 to 1; values outside are clamped.
    virtual void setVolume(float volume) = 0;

    /// How much of the stream is kept to go back to; zero, as at first, for nothing.
    virtual void setBufferLength(std::chrono::minutes length) = 0;
    struct LivePosition {
        /// The time since what is shown was live; zero while it is.
        std::chrono::milliseconds behind{};
        /// Whether something earlier is kept.
        bool canGoBack = false;

        friend bool operator==(const LivePosition&, const LivePosition&) = default;
    };
    [[nodiscard]] virtual LivePosition livePosition() const = 0;
    /// Goes back, as far as something is kept, or forward, at most to live.
    virtual void goBack(std::chrono::milliseconds distance) = 0;
    virtual void goLive() = 0;

    enum class Picture { shown, off };
    /// Without a picture, the work for it is saved. It comes back at the place where the sound is.
    virtual void setPicture(Picture picture) = 0;

    /// Returns what a view draws this player's video from; null for a player without video.
    [[nodiscard]] virtual VideoSource* videoSource() { return nullptr; }

Q_SIGNALS:
    void statusChanged();
    void livePositionChanged();
    /// The machine's sound server does not answer and holds the player up. Until it answers, what
    /// the factory makes plays without sound; then the sound comes back by itself.
    void soundLost();
    /// Emitted at the start of the destructor, while the player is still complete, so that a view
    /// can detach from it.
    void closing();
};

/// Shows the video of a player.
class VideoSurface {
public:
    virtual ~VideoSurface() = default;

    /// Null shows black. A player may be destroyed while it is set.
    virtual void setPlayer(MediaPlayer* player) = 0;
};

class MediaPlayerFactory {
public:
    virtual ~MediaPlayerFactory() = default;

    /// What of a player can be made before its address is known. Dropping it undoes that, in the
    /// background.
    class Standby {
    public:
        virtual ~Standby() = default;
    };
    /// Begins to make it, for a `make` that comes later. Null if it cannot be made ahead now.
    [[nodiscard]] virtual std::unique_ptr<Standby> standBy() { return nullptr; }

    /// Waits while too many earlier players are still being destroyed. Returns null if `stop` was
    /// requested meanwhile or the player cannot be created. `standby` may be null.
    [[nodiscard]] virtual QCoro::Task<std::unique_ptr<MediaPlayer>>
    make(StreamAddress address, std::unique_ptr<Standby> standby, std::stop_token stop) = 0;
};

/// Returns nullopt if `address` may be opened, else the reason to be shown to the user: only web
/// addresses are opened, whatever yt-dlp prints.
[[nodiscard]] std::optional<QString> refusalToOpen(const StreamAddress& address);

} // namespace orvane
