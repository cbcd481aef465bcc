// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MediaRemote.h"

#include "platform/MediaRemoteAdaptors.h"
#include "platform/MessageBus.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusObjectPath>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView objectPath{"/org/mpris/MediaPlayer2"};
constexpr QLatin1StringView playerInterface{"org.mpris.MediaPlayer2.Player"};
constexpr QLatin1StringView namePrefix{"org.mpris.MediaPlayer2."};

constexpr quint32 doNotQueue = 4;
constexpr quint32 isPrimaryOwner = 1;

/// A valid object path, another one for each text and always the same.
QDBusObjectPath trackPath(const QString& name, const QString& id) {
    QString escaped;
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

MediaRemote::MediaRemote(QString name, MessageBus& bus, MediaRemoteCommands& commands)
    : m_name(std::move(name)), m_bus(bus), m_commands(commands) {
    new MediaRemoteRootAdaptor(*this);
    new MediaRemotePlayerAdaptor(*this);
    connect(&m_bus, &MessageBus::connected, this, &MediaRemote::appear);
}

MediaRemote::~MediaRemote() = default;

void MediaRemote::appear(QDBusConnection bus) {
    bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    const QString usual = namePrefix + m_name;
    requestName(usual, u"%1.instance%2"_s.arg(usual).arg(QCoreApplication::applicationPid()));
}

void MediaRemote::requestName(const QString& name, std::optional<QString> otherwise) {
    QDBusMessage request =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"RequestName"_s);
    request << name << doNotQueue;
    m_bus.call(request, this, [this, otherwise = std::move(otherwise)](const auto& answer) {
        const bool isAnswered = answer.type() == QDBusMessage::ReplyMessage;
        if (isAnswered && otherwise && answer.arguments().value(0).toUInt() != isPrimaryOwner)
            requestName(*otherwise, std::nullopt);
    });
}

void MediaRemote::update(const MediaRemoteState& state) {
    const MediaRemoteState before = std::exchange(m_state, state);
    QVariantMap changed;
    if (state.status != before.status)
        changed.insert(u"PlaybackStatus"_s, playbackStatus());
    if (state.track != before.track)
        changed.insert(u"Metadata"_s, metadata());
    if (state.volume != before.volume)
        changed.insert(u"Volume"_s, state.volume);
    if (state.canStep != before.canStep) {
        changed.insert(u"CanGoNext"_s, state.canStep);
        changed.insert(u"CanGoPrevious"_s, state.canStep);
    }
    if (state.canPlay != before.canPlay)
        changed.insert(u"CanPlay"_s, state.canPlay);
    if (state.canPause != before.canPause)
        changed.insert(u"CanPause"_s, state.canPause);
    if (!changed.isEmpty())
        announce(changed);
}

void MediaRemote::announce(const QVariantMap& changed) {
    const std::optional<QDBusConnection>& bus = m_bus.connection();
    if (!bus)
        return;
    QDBusMessage signal = QDBusMessage::createSignal(
        objectPath, u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s);
    signal << QString(playerInterface) << changed << QStringList();
    [[maybe_unused]] const bool isQueued = bus->send(signal);
}

QString MediaRemote::playbackStatus() const {
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

QVariantMap MediaRemote::metadata() const {
    if (!m_state.track)
        return {};
    return {{u"mpris:trackid"_s, QVariant::fromValue(trackPath(m_name, m_state.track->id))},
            {u"xesam:title"_s, m_state.track->title},
            {u"xesam:url"_s, m_state.track->url.toString(QUrl::FullyEncoded)}};
}

void MediaRemote::refuseCall() {
    if (calledFromDBus())
        sendErrorReply(QDBusError::NotSupported, u"only channels that Orvane knows are played"_s);
}

} // namespace orvane
