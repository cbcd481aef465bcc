// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/bus/BusProbe.h"

#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QStringList>
#include <QUrl>
#include <QtEndian>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Much longer than a bus on a busy machine takes.
constexpr std::chrono::seconds answerTime{3};
constexpr auto variable = "DBUS_SESSION_BUS_ADDRESS";

/// Returns the path of the socket, which begins with a zero if it is an abstract one.
std::optional<QByteArray> socketPath(const QString& address) {
    const QString first = address.section(u';', 0, 0);
    if (!first.startsWith(u"unix:"_s))
        return std::nullopt;
    for (const QString& part : first.sliced(5).split(u',')) {
        QByteArray value = QByteArray::fromPercentEncoding(part.section(u'=', 1).toUtf8());
        if (part.startsWith(u"path="_s))
            return value;
        if (part.startsWith(u"abstract="_s))
            return '\0' + value;
    }
    return std::nullopt;
}

void append(QByteArray& message, quint32 number) {
    std::array<char, sizeof number> bytes{};
    qToLittleEndian(number, bytes.data());
    message.append(bytes.data(), bytes.size());
}

void appendField(QByteArray& fields, char code, char type, const QByteArray& text) {
    while (fields.size() % 8 != 0)
        fields.append('\0');
    const std::array start{code, '\x01', type, '\0'};
    fields.append(start.data(), start.size());
    append(fields, static_cast<quint32>(text.size()));
    fields.append(text).append('\0');
}

/// The call of "Hello", with which a client enters the bus.
QByteArray hello() {
    QByteArray fields;
    appendField(fields, 1, 'o', "/org/freedesktop/DBus");
    appendField(fields, 2, 's', "org.freedesktop.DBus");
    appendField(fields, 3, 's', "Hello");
    appendField(fields, 6, 's', "org.freedesktop.DBus");
    const auto length = static_cast<quint32>(fields.size());
    while (fields.size() % 8 != 0)
        fields.append('\0');
    QByteArray message("l\x01\0\x01", 4);
    append(message, 0);
    append(message, 1);
    append(message, length);
    return message + fields;
}

QByteArray greeting() {
    const QByteArray user = QByteArray::number(::getuid()).toHex();
    return '\0' + ("AUTH EXTERNAL " + user) + "\r\nBEGIN\r\n" + hello();
}

} // namespace

BusProbe::BusProbe(const QString& address) {
    const std::optional<QByteArray> path = socketPath(address);
    sockaddr_un place{};
    if (!path || path->isEmpty() || path->size() >= static_cast<qsizetype>(sizeof place.sun_path))
        return;
    place.sun_family = AF_UNIX;
    std::memcpy(place.sun_path, path->constData(), static_cast<std::size_t>(path->size()));
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path->size() +
                                               (path->front() == '\0' ? 0 : 1));
    m_socket = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const bool isOpen =
        ::connect(m_socket.get(), reinterpret_cast<const sockaddr*>(&place), length) == 0;
    // A full queue is one that nobody accepts from.
    if (!isOpen && errno != EAGAIN)
        m_socket.reset();
    const QByteArray bytes = greeting();
    if (isOpen)
        ::send(m_socket.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()),
               MSG_NOSIGNAL);
}

bool BusProbe::isSilent(std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    while (m_socket.isOpen()) {
        pollfd event{.fd = m_socket.get(), .events = POLLIN, .revents = 0};
        const int ready = ::poll(&event, 1, static_cast<int>(deadline.remainingTime()));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0)
            return true;
        std::array<char, 512> bytes{};
        const ssize_t size = ::read(m_socket.get(), bytes.data(), bytes.size());
        if (size > 0)
            m_received.append(bytes.data(), size);
        // Whoever hangs up does not let others wait either.
        if (size <= 0 || isAnswered())
            m_socket.reset();
    }
    return false;
}

bool BusProbe::isAnswered() const {
    // After the line that lets the client in comes a message, in the byte order that it names.
    const qsizetype end = m_received.indexOf("\r\n");
    const bool isLetIn = m_received.startsWith("OK");
    return end >= 0 && (!isLetIn || m_received.size() > end + 2);
}

SilentBusDetour::SilentBusDetour(const QString& address) {
    if (!BusProbe(address).isSilent(answerTime))
        return;
    qWarning("The session bus does not answer; there is no tray icon on it and no screen reader");
    m_address = qgetenv(variable);
    qputenv(variable, "disabled:");
}

void SilentBusDetour::end() {
    if (!m_address)
        return;
    // Qt remembers for ever what comes of its first attempt.
    [[maybe_unused]] const bool isConnected = QDBusConnection::sessionBus().isConnected();
    if (m_address->isEmpty())
        qunsetenv(variable);
    else
        qputenv(variable, *m_address);
}

} // namespace orvane
