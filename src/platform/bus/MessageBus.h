// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Cancellation.h"

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <stop_token>

namespace orvane {

class Clock;
class TaskScope;

/// The program's own connection to a D-Bus bus, separate from Qt's: it is opened in the background,
/// and again after the bus has been restarted. Owned by `DesktopIntegration`; main thread, which it
/// never blocks. A machine without such a bus is not an error; there is just no connection.
class MessageBus final : public QObject {
    Q_OBJECT

public:
    enum class Kind { session, system };

    /// Returns the address of the bus, empty if there is none. Any thread.
    [[nodiscard]] static QString addressOf(Kind kind);

    MessageBus(Kind kind, Clock& clock, TaskScope& tasks);
    ~MessageBus() override;

    void start();
    /// Closes the connection, which releases all that was acquired through it. Does not emit
    /// `disconnected`.
    void stop();

    /// nullopt while not connected.
    [[nodiscard]] const std::optional<QDBusConnection>& connection() const { return m_connection; }

    /// Passes the reply to `then`, asynchronously and on the main thread, unless `context` has been
    /// destroyed. There is no timeout. Any error, including that there is no bus, is a reply of
    /// type `ErrorMessage`.
    void call(const QDBusMessage& message, QObject* context,
              std::function<void(const QDBusMessage&)> then);

Q_SIGNALS:
    void connected(const QDBusConnection& bus);
    void disconnected();

private:
    [[nodiscard]] QCoro::Task<> keepTrying(std::stop_token stop);
    void adopt(const QString& name);
    [[nodiscard]] const char* kindName() const;
    Q_SLOT void lose();

    Kind m_kind;
    Clock& m_clock;
    TaskScope& m_tasks;
    Cancellation m_attempts;
    std::optional<QDBusConnection> m_connection;
};

} // namespace orvane
