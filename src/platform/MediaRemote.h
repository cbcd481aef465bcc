// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <optional>

namespace orvane {

class MessageBus;

/// What is told of the program to media keys, panels, lock screens and phones.
struct MediaRemoteState {
    enum class Status { stopped, playing, paused };
    struct Track {
        /// Distinguishes it from every other one; any text.
        QString id;
        QString title;
        QUrl url;

        friend bool operator==(const Track&, const Track&) = default;
    };

    Status status = Status::stopped;
    std::optional<Track> track;
    /// From 0 to 1.
    double volume = 1;
    bool canStep = false;
    bool canPlay = false;
    bool canPause = false;

    friend bool operator==(const MediaRemoteState&, const MediaRemoteState&) = default;
};

/// What they ask of the program.
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
    /// Brings the player's window to the front.
    virtual void raise() = 0;
    virtual void quit() = 0;
};

/// Offers the program on the session bus as a media player (MPRIS 2.2), under a name of its own
/// where another copy has the usual one. Owned by whoever integrates the program into the desktop;
/// main thread. Without a bus nobody asks for anything, which is no error. Live channels have no
/// length, so nothing can be sought.
class MediaRemote final : public QObject, protected QDBusContext {
    Q_OBJECT

public:
    /// `name` is the last part of the bus name. Both outlive it.
    MediaRemote(QString name, MessageBus& bus, MediaRemoteCommands& commands);
    ~MediaRemote() override;

    /// Announces what has changed.
    void update(const MediaRemoteState& state);
    [[nodiscard]] const MediaRemoteState& state() const { return m_state; }
    [[nodiscard]] MediaRemoteCommands& commands() const { return m_commands; }

    /// The values as they go over the bus.
    [[nodiscard]] QString playbackStatus() const;
    [[nodiscard]] QVariantMap metadata() const;

    /// Tells whoever is calling just now that this is nothing that the program does.
    void refuseCall();

private:
    void appear(QDBusConnection bus);
    void requestName(const QString& name, std::optional<QString> otherwise);
    void announce(const QVariantMap& changed);

    QString m_name;
    MessageBus& m_bus;
    MediaRemoteCommands& m_commands;
    MediaRemoteState m_state;
};

} // namespace orvane
