// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/SessionLock.h"

#include "base/Logging.h"
#include "platform/bus/MessageBus.h"

#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <array>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView logind{"org.freedesktop.login1"};
constexpr QLatin1StringView session{"org.freedesktop.login1.Session"};
constexpr QLatin1StringView properties{"org.freedesktop.DBus.Properties"};

/// Each service has an interface of the same name.
struct ScreenSaverService {
    QLatin1StringView name;
    QLatin1StringView path;
};
constexpr std::array screenSavers{
    ScreenSaverService{"org.freedesktop.ScreenSaver"_L1, "/org/freedesktop/ScreenSaver"_L1},
    ScreenSaverService{"org.gnome.ScreenSaver"_L1, "/org/gnome/ScreenSaver"_L1},
    ScreenSaverService{"org.mate.ScreenSaver"_L1, "/org/mate/ScreenSaver"_L1},
    ScreenSaverService{"org.cinnamon.ScreenSaver"_L1, "/org/cinnamon/ScreenSaver"_L1},
    ScreenSaverService{"org.xfce.ScreenSaver"_L1, "/org/xfce/ScreenSaver"_L1},
};

} // namespace

SessionLock::SessionLock(MessageBus& sessionBus, MessageBus& systemBus)
    : m_sessionBus(sessionBus), m_systemBus(systemBus) {
    connect(&sessionBus, &MessageBus::connected, this, &SessionLock::watchScreenSavers);
    connect(&sessionBus, &MessageBus::disconnected, this, [this] {
        for (const ScreenSaverService& service : screenSavers)
            set(service.name, false);
    });
    connect(&systemBus, &MessageBus::connected, this, &SessionLock::watchSession);
    connect(&systemBus, &MessageBus::disconnected, this, [this] { set(session, false); });
}

void SessionLock::watchScreenSavers(QDBusConnection bus) {
    auto* gone = new QDBusServiceWatcher(this);
    gone->setConnection(bus);
    gone->setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(gone, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString& name) { set(name, false); });
    connect(&m_sessionBus, &MessageBus::disconnected, gone, &QObject::deleteLater);
    for (const auto& [name, path] : screenSavers) {
        gone->addWatchedService(name);
        // For any sender, as Qt would wait for the answer to who has the name.
        bus.connect({}, path, name, u"ActiveChanged"_s, this,
                    SLOT(screenSaverChanged(bool, QDBusMessage)));
        QDBusMessage ask = QDBusMessage::createMethodCall(name, path, name, u"GetActive"_s);
        ask.setAutoStartService(false);
        m_sessionBus.call(ask, this, [this, name](const QDBusMessage& answer) {
            if (answer.type() == QDBusMessage::ReplyMessage)
                set(name, answer.arguments().value(0).toBool());
        });
    }
}

void SessionLock::watchSession() {
    QDBusMessage ask = QDBusMessage::createMethodCall(
        logind, u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"GetSession"_s);
    // "auto" is the session of the caller, or of the user's display.
    ask << qEnvironmentVariable("XDG_SESSION_ID", u"auto"_s);
    m_systemBus.call(ask, this, [this](const QDBusMessage& answer) {
        const auto& bus = m_systemBus.connection();
        if (bus && answer.type() == QDBusMessage::ReplyMessage)
            follow(*bus, answer.arguments().value(0).value<QDBusObjectPath>().path());
    });
}

void SessionLock::follow(QDBusConnection bus, const QString& path) {
    bus.connect({}, path, properties, u"PropertiesChanged"_s, this,
                SLOT(sessionChanged(QString, QVariantMap)));
    QDBusMessage ask = QDBusMessage::createMethodCall(logind, path, properties, u"Get"_s);
    ask << QString(session) << u"LockedHint"_s;
    m_systemBus.call(ask, this, [this](const QDBusMessage& answer) {
        if (answer.type() == QDBusMessage::ReplyMessage)
            set(session, answer.arguments().value(0).value<QDBusVariant>().variant().toBool());
    });
}

void SessionLock::screenSaverChanged(bool isActive, const QDBusMessage& signal) {
    set(signal.interface(), isActive);
}

void SessionLock::sessionChanged(const QString& interface, const QVariantMap& changes) {
    if (interface == session && changes.contains(u"LockedHint"_s))
        set(session, changes.value(u"LockedHint"_s).toBool());
}

void SessionLock::set(const QString& source, bool isSourceLocked) {
    const bool before = isLocked();
    if (isSourceLocked)
        m_lockedBy.insert(source);
    else
        m_lockedBy.remove(source);
    if (isLocked() == before)
        return;
    qCInfo(logDBus) << (isLocked() ? "the session is locked, by" : "the session is unlocked, by")
                    << source;
    Q_EMIT changed(isLocked());
}

} // namespace orvane
