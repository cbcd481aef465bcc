// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/mpris/MediaRemote.h"

#include "base/Logging.h"
#include "platform/bus/MessageBus.h"
#include "platform/desktop/mpris/MediaRemoteAdaptors.h"

#include <QCoreApplication>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView objectPath{"/org/mpris/MediaPlayer2"};
constexpr QLatin1StringView playerInterface{"org.mpris.MediaPlayer2.Player"};
constexpr QLatin1StringView namePrefix{"org.mpris.MediaPlayer2."};

constexpr quint32 doNotQueue = 4;
constexpr quint32 isPrimaryOwner = 1;

} // namespace

MediaRemote::MediaRemote(QString name, MessageBus& bus, MediaRemoteCommands& commands)
    : m_name(std::move(name)), m_bus(bus), m_object(m_name, commands) {
    new MediaRemoteRootAdaptor(m_object);
    new MediaRemotePlayerAdaptor(m_object);
    connect(&m_bus, &MessageBus::connected, this, &MediaRemote::appear);
}

MediaRemote::~MediaRemote() = default;

void MediaRemote::appear(QDBusConnection bus) {
    bus.registerObject(objectPath, &m_object, QDBusConnection::ExportAdaptors);
    const QString usual = namePrefix + m_name;
    requestName(usual, u"%1.instance%2"_s.arg(usual).arg(QCoreApplication::applicationPid()));
}

void MediaRemote::requestName(const QString& name, std::optional<QString> fallback) {
    QDBusMessage request =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"RequestName"_s);
    request << name << doNotQueue;
    m_bus.call(request, this, [this, fallback = std::move(fallback)](const auto& answer) {
        const bool isAnswered = answer.type() == QDBusMessage::ReplyMessage;
        if (isAnswered && fallback && answer.arguments().value(0).toUInt() != isPrimaryOwner) {
            qCInfo(logDBus) << "another copy is the usual media player; using" << *fallback;
            requestName(*fallback, std::nullopt);
        }
    });
}

void MediaRemote::update(const MediaRemoteState& state) {
    const MediaRemoteState before = m_object.setState(state);
    QVariantMap changed;
    if (state.status != before.status)
        changed.insert(u"PlaybackStatus"_s, m_object.playbackStatus());
    if (state.track != before.track)
        changed.insert(u"Metadata"_s, m_object.metadata());
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
    if (state.canSeek != before.canSeek)
        changed.insert(u"CanSeek"_s, state.canSeek);
    if (!changed.isEmpty())
        announce(changed);
}

void MediaRemote::announceJump() {
    const std::optional<QDBusConnection>& bus = m_bus.connection();
    if (!bus)
        return;
    QDBusMessage signal = QDBusMessage::createSignal(objectPath, playerInterface, u"Seeked"_s)
                          << m_object.position();
    [[maybe_unused]] const bool isQueued = bus->send(signal);
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

} // namespace orvane
