// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/mpris/MediaRemoteAdaptors.h"

#include <QGuiApplication>

namespace orvane {

MediaRemoteRootAdaptor::MediaRemoteRootAdaptor(MediaRemoteObject& remote)
    : QDBusAbstractAdaptor(&remote), m_remote(remote) {}

QString MediaRemoteRootAdaptor::identity() const {
    return QGuiApplication::applicationDisplayName();
}

QString MediaRemoteRootAdaptor::desktopEntry() const {
    return QGuiApplication::desktopFileName();
}

void MediaRemoteRootAdaptor::Raise() {
    m_remote.commands().raise();
}

void MediaRemoteRootAdaptor::Quit() {
    m_remote.commands().quit();
}

MediaRemotePlayerAdaptor::MediaRemotePlayerAdaptor(MediaRemoteObject& remote)
    : QDBusAbstractAdaptor(&remote), m_remote(remote) {}

void MediaRemotePlayerAdaptor::setVolume(double volume) {
    m_remote.commands().setVolume(volume);
}

void MediaRemotePlayerAdaptor::Play() {
    m_remote.commands().play();
}

void MediaRemotePlayerAdaptor::Pause() {
    m_remote.commands().pause();
}

void MediaRemotePlayerAdaptor::PlayPause() {
    m_remote.commands().playPause();
}

void MediaRemotePlayerAdaptor::Stop() {
    m_remote.commands().stop();
}

void MediaRemotePlayerAdaptor::Next() {
    m_remote.commands().next();
}

void MediaRemotePlayerAdaptor::Previous() {
    m_remote.commands().previous();
}

void MediaRemotePlayerAdaptor::Seek(qlonglong Offset) {
    m_remote.seek(Offset);
}

void MediaRemotePlayerAdaptor::SetPosition(const QDBusObjectPath& TrackId, qlonglong Position) {
    m_remote.setPosition(TrackId.path(), Position);
}

void MediaRemotePlayerAdaptor::OpenUri(const QString&) {
    m_remote.refuseCall();
}

} // namespace orvane
