// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/SavingMode.h"

#include "base/Logging.h"
#include "platform/bus/MessageBus.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <array>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView properties{"org.freedesktop.DBus.Properties"};
constexpr QLatin1StringView portal{"org.freedesktop.portal.Desktop"};
constexpr QLatin1StringView portalPath{"/org/freedesktop/portal/desktop"};
constexpr QLatin1StringView portalNetwork{"org.freedesktop.portal.NetworkMonitor"};

/// NetworkManager also guesses, for phones and the like.
bool isMetered(const QVariant& value) {
    constexpr uint yes = 1;
    constexpr uint probably = 3;
    return value.toUInt() == yes || value.toUInt() == probably;
}

bool isSavingProfile(const QVariant& value) {
    return value.toString() == u"power-saver";
}

bool isTrue(const QVariant& value) {
    return value.toBool();
}

/// A property that tells whether there is something to save.
struct Source {
    bool isOnSystemBus;
    QLatin1StringView service;
    QLatin1StringView path;
    QLatin1StringView interface;
    QLatin1StringView property;
    bool (*isReason)(const QVariant& value);
};
constexpr std::array sources{
    Source{true, "org.freedesktop.NetworkManager"_L1, "/org/freedesktop/NetworkManager"_L1,
           "org.freedesktop.NetworkManager"_L1, "Metered"_L1, isMetered},
    // One service, under its present and its former name.
    Source{true, "org.freedesktop.UPower.PowerProfiles"_L1,
           "/org/freedesktop/UPower/PowerProfiles"_L1, "org.freedesktop.UPower.PowerProfiles"_L1,
           "ActiveProfile"_L1, isSavingProfile},
    Source{true, "net.hadess.PowerProfiles"_L1, "/net/hadess/PowerProfiles"_L1,
           "net.hadess.PowerProfiles"_L1, "ActiveProfile"_L1, isSavingProfile},
    Source{false, portal, portalPath, "org.freedesktop.portal.PowerProfileMonitor"_L1,
           "power-saver-enabled"_L1, isTrue},
};

} // namespace

SavingMode::SavingMode(MessageBus& sessionBus, MessageBus& systemBus)
    : m_sessionBus(sessionBus), m_systemBus(systemBus) {
    for (MessageBus* bus : {&sessionBus, &systemBus}) {
        connect(bus, &MessageBus::connected, this,
                [this, bus](const QDBusConnection& connection) { watch(*bus, connection); });
        connect(bus, &MessageBus::disconnected, this, [this, bus] { forget(*bus); });
    }
}

void SavingMode::watch(MessageBus& bus, const QDBusConnection& connection) {
    QDBusConnection changes = connection;
    auto* owners = new QDBusServiceWatcher(this);
    owners->setConnection(connection);
    owners->setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    connect(&bus, &MessageBus::disconnected, owners, &QObject::deleteLater);
    for (qsizetype i = 0; i < std::ssize(sources); ++i) {
        const Source& source = sources.at(static_cast<std::size_t>(i));
        if (source.isOnSystemBus != (&bus == &m_systemBus))
            continue;
        owners->addWatchedService(source.service);
        changes.connect({}, source.path, properties, u"PropertiesChanged"_s, this,
                        SLOT(propertiesChanged(QString, QVariantMap)));
        ask(bus, i);
        connect(owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this, &bus, i, name = QString(source.service)](
                    const QString& service, const QString&, const QString& owner) {
                    if (service != name)
                        return;
                    if (owner.isEmpty())
                        set(sources.at(static_cast<std::size_t>(i)).interface, false);
                    else
                        ask(bus, i);
                });
    }
    if (&bus != &m_sessionBus)
        return;
    changes.connect({}, portalPath, portalNetwork, u"changed"_s, this, SLOT(portalChanged()));
    askPortal();
}

void SavingMode::ask(MessageBus& bus, qsizetype index) {
    const Source& source = sources.at(static_cast<std::size_t>(index));
    QDBusMessage question =
        QDBusMessage::createMethodCall(source.service, source.path, properties, u"Get"_s);
    question << QString(source.interface) << QString(source.property);
    question.setAutoStartService(false);
    bus.call(question, this, [this, &source](const QDBusMessage& answer) {
        const QVariant value = answer.arguments().value(0).value<QDBusVariant>().variant();
        set(source.interface,
            answer.type() == QDBusMessage::ReplyMessage && source.isReason(value));
    });
}

void SavingMode::askPortal() {
    QDBusMessage question =
        QDBusMessage::createMethodCall(portal, portalPath, portalNetwork, u"GetMetered"_s);
    question.setAutoStartService(false);
    m_sessionBus.call(question, this, [this](const QDBusMessage& answer) {
        set(portalNetwork,
            answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool());
    });
}

void SavingMode::portalChanged() {
    askPortal();
}

void SavingMode::propertiesChanged(const QString& interface, const QVariantMap& changes) {
    for (const Source& source : sources) {
        if (source.interface == interface && changes.contains(QString(source.property)))
            set(source.interface, source.isReason(changes.value(QString(source.property))));
    }
}

void SavingMode::forget(MessageBus& bus) {
    for (const Source& source : sources) {
        if (source.isOnSystemBus == (&bus == &m_systemBus))
            set(source.interface, false);
    }
    if (&bus == &m_sessionBus)
        set(portalNetwork, false);
}

void SavingMode::set(const QString& reason, bool isReason) {
    const bool before = isOn();
    if (isReason)
        m_reasons.insert(reason);
    else
        m_reasons.remove(reason);
    if (isOn() == before)
        return;
    qCInfo(logDBus).noquote() << (isOn() ? "data or power is to be saved, says"
                                         : "nothing is to be saved any more, says")
                              << reason;
    Q_EMIT changed(isOn());
}

} // namespace orvane
