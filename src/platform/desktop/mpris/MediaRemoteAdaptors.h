// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/mpris/MediaRemoteObject.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QStringList>

namespace orvane {

/// The two MPRIS interfaces, as Qt exports them on the bus: each is owned by the
/// `MediaRemoteObject` whose state it reads and whose commands it calls. Main thread. Names and
/// types are those of the standard.
class MediaRemoteRootAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ yes CONSTANT)
    Q_PROPERTY(bool CanRaise READ yes CONSTANT)
    Q_PROPERTY(bool HasTrackList READ no CONSTANT)
    Q_PROPERTY(QString Identity READ identity CONSTANT)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry CONSTANT)
    Q_PROPERTY(QStringList SupportedUriSchemes READ none CONSTANT)
    Q_PROPERTY(QStringList SupportedMimeTypes READ none CONSTANT)

public:
    explicit MediaRemoteRootAdaptor(MediaRemoteObject& remote);

    [[nodiscard]] bool yes() const { return true; }
    [[nodiscard]] bool no() const { return false; }
    [[nodiscard]] QStringList none() const { return {}; }
    [[nodiscard]] QString identity() const;
    [[nodiscard]] QString desktopEntry() const;

public Q_SLOTS:
    void Raise();
    void Quit();

private:
    MediaRemoteObject& m_remote;
};

class MediaRemotePlayerAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(double Rate READ one CONSTANT)
    Q_PROPERTY(double MinimumRate READ one CONSTANT)
    Q_PROPERTY(double MaximumRate READ one CONSTANT)
    Q_PROPERTY(bool CanGoNext READ canStep)
    Q_PROPERTY(bool CanGoPrevious READ canStep)
    Q_PROPERTY(bool CanPlay READ canPlay)
    Q_PROPERTY(bool CanPause READ canPause)
    Q_PROPERTY(bool CanSeek READ canSeek)
    Q_PROPERTY(bool CanControl READ yes CONSTANT)

public:
    explicit MediaRemotePlayerAdaptor(MediaRemoteObject& remote);

    [[nodiscard]] bool yes() const { return true; }
    [[nodiscard]] double one() const { return 1; }
    [[nodiscard]] qlonglong position() const { return m_remote.position(); }
    [[nodiscard]] QString playbackStatus() const { return m_remote.playbackStatus(); }
    [[nodiscard]] QVariantMap metadata() const { return m_remote.metadata(); }
    [[nodiscard]] double volume() const { return m_remote.state().volume; }
    void setVolume(double volume);
    [[nodiscard]] bool canStep() const { return m_remote.state().canStep; }
    [[nodiscard]] bool canPlay() const { return m_remote.state().canPlay; }
    [[nodiscard]] bool canPause() const { return m_remote.state().canPause; }
    [[nodiscard]] bool canSeek() const { return m_remote.state().canSeek; }

public Q_SLOTS:
    void Play();
    void Pause();
    void PlayPause();
    void Stop();
    void Next();
    void Previous();
    void Seek(qlonglong Offset);
    void SetPosition(const QDBusObjectPath& TrackId, qlonglong Position);
    void OpenUri(const QString& Uri);

Q_SIGNALS:
    void Seeked(qlonglong Position);

private:
    MediaRemoteObject& m_remote;
};

} // namespace orvane
