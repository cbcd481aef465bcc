// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/tray/TrayWatcher.h"

#include "base/Logging.h"
#include "platform/bus/MessageBus.h"
#include "platform/windowing/x11/X11.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusServiceWatcher>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView busName{"org.kde.StatusNotifierWatcher"};
constexpr std::string_view selectionName = "_NET_SYSTEM_TRAY_S0";

} // namespace

TrayWatcher::TrayWatcher(MessageBus& sessionBus)
    : m_sessionBus(sessionBus), m_findEmbedder([this] {
          if (hasEmbedder())
              appear("system tray of X11");
      }) {
    if (X11::connection() != nullptr)
        QCoreApplication::instance()->installNativeEventFilter(this);
    // Only the first connection, as Qt's own, with which it shows the icon, does not return either.
    connect(&sessionBus, &MessageBus::connected, this, &TrayWatcher::watch,
            Qt::SingleShotConnection);
    connect(&sessionBus, &MessageBus::disconnected, this, [this] {
        m_isOnBus = false;
        notice();
    });
    m_findEmbedder.schedule();
}

TrayWatcher::~TrayWatcher() = default;

void TrayWatcher::watch(QDBusConnection bus) {
    // Qt shows the icon on its own connection, which was made at the start or never will be.
    if (!QDBusConnection::sessionBus().isConnected())
        return;
    auto* names =
        new QDBusServiceWatcher(busName, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(names, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        m_isOnBus = false;
        notice();
    });
    connect(names, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        m_isOnBus = true;
        appear("StatusNotifierWatcher");
    });
    QDBusMessage question =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question.setArguments({QString(busName)});
    m_sessionBus.call(question, this, [this](const QDBusMessage& answer) {
        const bool isThere =
            answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool();
        if (m_isOnBus || !isThere)
            return;
        m_isOnBus = true;
        appear("StatusNotifierWatcher");
    });
}

void TrayWatcher::appear(const char* kind) {
    qCInfo(logDBus) << "found a tray:" << kind;
    m_hadTray = true;
    Q_EMIT trayAppeared();
}

void TrayWatcher::notice() {
    if (!m_hadTray || hasTray())
        return;
    m_hadTray = false;
    qCInfo(logDBus) << "the tray has gone";
    Q_EMIT trayGone();
}

bool TrayWatcher::hasEmbedder() {
    return X11::hasSelectionOwner(selectionName);
}

bool TrayWatcher::hasTray() const {
    return m_isOnBus || hasEmbedder();
}

bool TrayWatcher::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_client_message_event_t*>(message);
    if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE &&
        event->type == X11::atom("MANAGER") && event->data.data32[1] == X11::atom(selectionName))
        appear("system tray of X11");
    // Qt's icon asks for the end of the tray that it is in.
    if ((event->response_type & 0x7f) == XCB_DESTROY_NOTIFY)
        m_deferredNotice.schedule();
    return false;
}

} // namespace orvane
