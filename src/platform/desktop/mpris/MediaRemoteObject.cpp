// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/mpris/MediaRemoteObject.h"

#include <QDBusError>
#include <QDBusObjectPath>

#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Returns a valid object path that is unique for each `id`.
QDBusObjectPath trackPath(const QString& name, const QString& id) {
    // No element of a path is empty.
    QString escaped = id.isEmpty() ? u"_"_s : QString();
    for (const char byte : id.toUtf8()) {
        const bool isPlain = (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
                             (byte >= 'A' && byte <= 'Z');
        if (isPlain)
            escaped += QLatin1Char(byte);
        else
            escaped += u"_%1"_s.arg(static_cast<unsigned char>(byte), 2, 16, QLatin1Char('0'));
    }
    return QDBusObjectPath(u"/%1/track/%2"_s.arg(name, escaped));
}

} // namespace

MediaRemoteObject::MediaRemoteObject(QString name, MediaRemoteCommands& commands)
    : m_name(std::move(name)), m_commands(commands) {}

MediaRemoteState MediaRemoteObject::setState(const MediaRemoteState& state) {
    return std::exchange(m_state, state);
}

QString MediaRemoteObject::playbackStatus() const {
    switch (m_state.status) {
    case MediaRemoteState::Status::playing:
        return u"Playing"_s;
    case MediaRemoteState::Status::paused:
        return u"Paused"_s;
    case MediaRemoteState::Status::stopped:
        break;
    }
    return u"Stopped"_s;
}

QVariantMap MediaRemoteObject::metadata() const {
    if (!m_state.track)
        return {};
    QVariantMap data{
        {u"mpris:trackid"_s, QVariant::fromValue(trackPath(m_name, m_state.track->id))},
        {u"xesam:title"_s, m_state.track->title},
        {u"xesam:url"_s, m_state.track->url.toString(QUrl::FullyEncoded)}};
    if (!m_state.track->comment.isEmpty())
        data.insert(u"xesam:comment"_s, QStringList{m_state.track->comment});
    return data;
}

qlonglong MediaRemoteObject::position() const {
    return m_state.canSeek ? m_commands.position().count() : 0;
}

void MediaRemoteObject::seek(qlonglong offset) {
    if (m_state.canSeek)
        m_commands.goBack(-std::chrono::microseconds(offset));
}

void MediaRemoteObject::setPosition(const QString& track, qlonglong wanted) {
    const bool isCurrent = m_state.track && trackPath(m_name, m_state.track->id).path() == track;
    if (isCurrent && wanted >= 0)
        seek(wanted - position());
}

void MediaRemoteObject::refuseCall() {
    if (calledFromDBus())
        sendErrorReply(QDBusError::NotSupported, u"Orvane only plays the channels in its list"_s);
}

} // namespace orvane
