// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>
#include <stop_token>

namespace orvane {

/// Plays one stream from one address. Owned by whoever had it made; main thread, which no call here
/// ever blocks. Opening starts with the first `play`. The outcome is told by `statusChanged`; a
/// failed player stays failed.
class MediaPlayer : public QObject {
    Q_OBJECT

public:
    enum class Status {
        unknown,
        /// The first picture can be seen (or the first sound heard, where there is no picture).
        readyToPlay,
        /// It could not be opened, was refused later on, or has ended: live streams do not end.
        failed
    };
    enum class TimeControlStatus { paused, waiting, playing };

    [[nodiscard]] virtual Status status() const = 0;
    /// Why it failed, for the person to read; nothing when the reason is not known.
    [[nodiscard]] virtual std::optional<QString> error() const = 0;
    [[nodiscard]] virtual TimeControlStatus timeControlStatus() const = 0;

    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void setMuted(bool muted) = 0;
    /// From 0 to 1; values outside are clamped.
    virtual void setVolume(float volume) = 0;

Q_SIGNALS:
    void statusChanged();
    /// Emitted first thing when the player is destroyed, while it is still whole, so that a view
    /// can let go of it.
    void closing();
};

/// Where a player shows its picture.
class VideoSurface {
public:
    virtual ~VideoSurface() = default;

    /// Null shows black. A player that is destroyed lets go by itself.
    virtual void setPlayer(MediaPlayer* player) = 0;
};

class MediaPlayerFactory {
public:
    virtual ~MediaPlayerFactory() = default;

    /// Waits while too many earlier players are still being taken apart; null when `stop` was
    /// requested meanwhile.
    [[nodiscard]] virtual QCoro::Task<std::unique_ptr<MediaPlayer>> make(QUrl url,
                                                                         std::stop_token stop) = 0;
};

/// Nothing when `url` may be opened, else the reason for the person: only the web's own addresses
/// are, whatever a tool may print.
[[nodiscard]] std::optional<QString> refusalToOpen(const QUrl& url);

} // namespace orvane
