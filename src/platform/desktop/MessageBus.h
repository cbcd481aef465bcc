// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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

/// The program's own connection to one of D-Bus's buses, apart from the toolkit's: it is made in
/// the background, and made anew when the bus has gone and another one has come. Owned by those who
/// integrate the program into the desktop; main thread, which it never keeps waiting for a bus. A
/// machine without such a bus is no error: there is just no connection.
class MessageBus final : public QObject {
    Q_OBJECT

public:
    enum class Kind { session, system };

    MessageBus(Kind kind, Clock& clock, TaskScope& tasks);
    ~MessageBus() override;

    void start();
    /// Closes the connection, with which everything goes that was taken through it. Silent.
    void stop();

    /// Nothing while there is none.
    [[nodiscard]] const std::optional<QDBusConnection>& connection() const { return m_connection; }

    /// Hands the answer to `then`, later and on the main thread, unless `context` has gone. The
    /// answer may take for ever; whatever goes wrong, no bus included, is an answer of type
    /// `ErrorMessage`.
    void call(const QDBusMessage& message, QObject* context,
              std::function<void(const QDBusMessage&)> then);

Q_SIGNALS:
    void connected(const QDBusConnection& bus);
    void disconnected();

private:
    [[nodiscard]] QCoro::Task<> keepTrying(std::stop_token stop);
    void adopt(const QString& name);
    Q_SLOT void lose();

    Kind m_kind;
    Clock& m_clock;
    TaskScope& m_tasks;
    std::stop_source m_attempts{std::nostopstate};
    std::optional<QDBusConnection> m_connection;
};

} // namespace orvane
