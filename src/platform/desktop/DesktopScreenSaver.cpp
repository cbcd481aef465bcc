// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/DesktopScreenSaver.h"

#include "platform/bus/MessageBus.h"
#include "platform/windowing/x11/X11.h"

#include <QDBusObjectPath>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView screenSaver{"org.freedesktop.ScreenSaver"};
constexpr QLatin1StringView screenSaverPath{"/org/freedesktop/ScreenSaver"};
constexpr QLatin1StringView portal{"org.freedesktop.portal.Desktop"};
constexpr QLatin1StringView portalPath{"/org/freedesktop/portal/desktop"};
/// The portal's flag for "the session becomes idle".
constexpr quint32 idleFlag = 8;

QDBusMessage inhibitCall(InhibitionLease::Way way, const QString& program, const QString& reason) {
    if (way == InhibitionLease::Way::screenSaver) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(screenSaver, screenSaverPath, screenSaver, u"Inhibit"_s);
        call << program << reason;
        return call;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        portal, portalPath, u"org.freedesktop.portal.Inhibit"_s, u"Inhibit"_s);
    const QString noWindow;
    call << noWindow << idleFlag << QVariantMap{{u"reason"_s, reason}};
    return call;
}

QDBusMessage releaseCall(const InhibitionLease::Release& held) {
    if (held.way == InhibitionLease::Way::screenSaver) {
        QDBusMessage call = QDBusMessage::createMethodCall(screenSaver, screenSaverPath,
                                                           screenSaver, u"UnInhibit"_s);
        call << held.token;
        return call;
    }
    return QDBusMessage::createMethodCall(portal, held.token.value<QDBusObjectPath>().path(),
                                          u"org.freedesktop.portal.Request"_s, u"Close"_s);
}

} // namespace

DesktopScreenSaver::DesktopScreenSaver(MessageBus& sessionBus, QString program, QString reason)
    : m_bus(sessionBus), m_program(std::move(program)), m_reason(std::move(reason)) {
    connect(&m_bus, &MessageBus::connected, this, &DesktopScreenSaver::watchServices);
    connect(&m_bus, &MessageBus::disconnected, this, [this] {
        m_services.reset();
        perform(m_lease.serviceWent(Way::screenSaver));
        perform(m_lease.serviceWent(Way::portal));
    });
}

DesktopScreenSaver::~DesktopScreenSaver() = default;

void DesktopScreenSaver::inhibit() {
    perform(m_lease.want());
}

void DesktopScreenSaver::release() {
    perform(m_lease.unwant());
}

void DesktopScreenSaver::watchServices(const QDBusConnection& bus) {
    m_services = std::make_unique<QDBusServiceWatcher>();
    m_services->setConnection(bus);
    m_services->setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    m_services->setWatchedServices({screenSaver, portal});
    connect(m_services.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            &DesktopScreenSaver::followOwner);
    // This bus may offer a better way than the one in use.
    perform(m_lease.serviceCame(Way::screenSaver));
}

void DesktopScreenSaver::followOwner(const QString& service, const QString& before,
                                     const QString& after) {
    const Way way = service == screenSaver ? Way::screenSaver : Way::portal;
    if (!before.isEmpty())
        perform(m_lease.serviceWent(way));
    if (!after.isEmpty())
        perform(m_lease.serviceCame(way));
}

void DesktopScreenSaver::perform(const InhibitionLease::Commands& commands) {
    for (const InhibitionLease::Command& command : commands) {
        if (const auto* asked = std::get_if<InhibitionLease::Ask>(&command))
            ask(*asked);
        else
            giveBack(std::get<InhibitionLease::Release>(command));
    }
}

void DesktopScreenSaver::ask(const InhibitionLease::Ask& ask) {
    if (ask.way == Way::xServer) {
        const bool isSuspended = X11::setScreenSaver(X11::ScreenSaver::suspended);
        perform(isSuspended ? m_lease.granted(ask, {}) : m_lease.refused(ask));
        return;
    }
    m_bus.call(inhibitCall(ask.way, m_program, m_reason), this, [this, ask](const auto& answer) {
        const bool isGranted =
            answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty();
        perform(isGranted ? m_lease.granted(ask, answer.arguments().first())
                          : m_lease.refused(ask));
    });
}

void DesktopScreenSaver::giveBack(const InhibitionLease::Release& held) {
    if (held.way == Way::xServer)
        X11::setScreenSaver(X11::ScreenSaver::running);
    else
        m_bus.call(releaseCall(held), this, [](const auto&) {});
}

} // namespace orvane
