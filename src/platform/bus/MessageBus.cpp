// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bus/MessageBus.h"

#include "base/Clock.h"
#include "base/Logging.h"
#include "base/TaskScope.h"
#include "platform/bus/BusProbe.h"

#include <QCoroFuture>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QFuture>
#include <QtConcurrent>

#include <algorithm>
#include <chrono>
#include <limits>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::seconds firstPause{1};
constexpr std::chrono::seconds longestPause{60};
/// Much longer than a bus on a busy machine takes.
constexpr std::chrono::seconds answerTime{10};

/// Each attempt needs a connection name of its own.
QString nextName() {
    static int count = 0;
    return u"orvane-%1"_s.arg(++count);
}

bool connectTo(const QString& address, const QString& name) {
    // One connection that hangs would keep QtDBus from making any other.
    return !address.isEmpty() && !BusProbe(address).isSilent(answerTime) &&
           QDBusConnection::connectToBus(address, name).isConnected();
}

} // namespace

// Without an address, libdbus would launch a session bus for this program alone, where there are no
// services.
QString MessageBus::addressOf(Kind kind) {
    if (kind == Kind::system)
        return qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS",
                                    u"unix:path=/run/dbus/system_bus_socket"_s);
    QString given = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const QString socket = qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s;
    if (!given.isEmpty() || !QFile::exists(socket))
        return given;
    return u"unix:path="_s + socket;
}

MessageBus::MessageBus(Kind kind, Clock& clock, TaskScope& tasks)
    : m_kind(kind), m_clock(clock), m_tasks(tasks) {}

MessageBus::~MessageBus() {
    stop();
}

void MessageBus::start() {
    m_tasks.spawn(keepTrying(m_attempts.restart()));
}

void MessageBus::stop() {
    m_attempts.cancel();
    if (m_connection)
        QDBusConnection::disconnectFromBus(m_connection->name());
    m_connection.reset();
}

QCoro::Task<> MessageBus::keepTrying(std::stop_token stop) {
    for (std::chrono::seconds pause = firstPause;; pause = std::min(2 * pause, longestPause)) {
        const QString name = nextName();
        const QString address = addressOf(m_kind);
        // In a thread, because it waits for the bus, which may be slow or hang.
        const QFuture<bool> attempt = QtConcurrent::run(connectTo, address, name);
        const bool isConnected = co_await attempt;
        if (isConnected && !stop.stop_requested()) {
            adopt(name);
            co_return;
        }
        QDBusConnection::disconnectFromBus(name);
        if (stop.stop_requested())
            co_return;
        qCInfo(logDBus) << "no" << kindName() << "bus; next attempt in" << pause.count() << "s";
        co_await m_clock.sleep(pause, stop);
        if (stop.stop_requested())
            co_return;
    }
}

const char* MessageBus::kindName() const {
    return m_kind == Kind::session ? "session" : "system";
}

void MessageBus::adopt(const QString& name) {
    QDBusConnection bus(name);
    bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                u"Disconnected"_s, this, SLOT(lose()));
    m_connection = bus;
    qCInfo(logDBus) << "connected to the" << kindName() << "bus as" << bus.baseService();
    Q_EMIT connected(bus);
}

void MessageBus::lose() {
    if (!m_connection)
        return;
    qCWarning(logDBus) << "lost the" << kindName() << "bus";
    stop();
    Q_EMIT disconnected();
    start();
}

void MessageBus::call(const QDBusMessage& message, QObject* context,
                      std::function<void(const QDBusMessage&)> then) {
    if (!m_connection) {
        const QDBusMessage none = QDBusMessage::createError(QDBusError::Disconnected, u"no bus"_s);
        QMetaObject::invokeMethod(
            context, [none, then = std::move(then)] { then(none); }, Qt::QueuedConnection);
        return;
    }
    constexpr int noLimit = std::numeric_limits<int>::max();
    auto* answer = new QDBusPendingCallWatcher(m_connection->asyncCall(message, noLimit), context);
    const QString method = message.interface() + u'.' + message.member();
    connect(answer, &QDBusPendingCallWatcher::finished, context,
            [answer, method, then = std::move(then)] {
                answer->deleteLater();
                if (answer->isError())
                    qCInfo(logDBus) << method << "failed:" << answer->error().message();
                then(answer->reply());
            });
}

} // namespace orvane
