// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusContext>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <chrono>
#include <optional>

namespace orvane {

/// The state that media keys, panels, lock screens and phones see.
struct MediaRemoteState {
    enum class Status { stopped, playing, paused };
    struct Track {
        /// Unique; any text.
        QString id;
        QString title;
        QUrl url;
        /// May be empty.
        QString comment = {};

        friend bool operator==(const Track&, const Track&) = default;
    };

    Status status = Status::stopped;
    std::optional<Track> track;
    /// From 0 to 1.
    double volume = 1;
    bool canStep = false;
    bool canPlay = false;
    bool canPause = false;
    /// Without it the position is 0.
    bool canSeek = false;

    friend bool operator==(const MediaRemoteState&, const MediaRemoteState&) = default;
};

/// What they can have the program do.
class MediaRemoteCommands {
public:
    virtual ~MediaRemoteCommands() = default;

    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void playPause() = 0;
    virtual void stop() = 0;
    virtual void next() = 0;
    virtual void previous() = 0;
    virtual void setVolume(double volume) = 0;
    /// Later if `distance` is negative.
    virtual void goBack(std::chrono::microseconds distance) = 0;
    /// Returns where the player is, on a scale that only begins anew with another track.
    [[nodiscard]] virtual std::chrono::microseconds position() const = 0;
    /// Brings the player window to the front.
    virtual void raise() = 0;
    virtual void quit() = 0;
};

/// The object that other programs see on the bus: the current state in the types of the MPRIS
/// interfaces, and access to the commands. Owned by `MediaRemote`; main thread.
class MediaRemoteObject final : public QObject, protected QDBusContext {
    Q_OBJECT

public:
    /// `name` is the prefix of track paths. `commands` must outlive this object.
    MediaRemoteObject(QString name, MediaRemoteCommands& commands);

    [[nodiscard]] const MediaRemoteState& state() const { return m_state; }
    /// Returns the previous state.
    MediaRemoteState setState(const MediaRemoteState& state);
    [[nodiscard]] MediaRemoteCommands& commands() const { return m_commands; }

    [[nodiscard]] QString playbackStatus() const;
    [[nodiscard]] QVariantMap metadata() const;
    /// In microseconds.
    [[nodiscard]] qlonglong position() const;
    void seek(qlonglong offset);
    /// Ignored for another track, and for places that are not there.
    void setPosition(const QString& trackPath, qlonglong position);

    /// Replies to the current call with the error "not supported".
    void refuseCall();

private:
    QString m_name;
    MediaRemoteCommands& m_commands;
    MediaRemoteState m_state;
};

} // namespace orvane
