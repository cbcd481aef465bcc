// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/sway/SwaySocket.h"

#include <array>
#include <cstring>
#include <utility>

namespace orvane {

namespace {

constexpr QByteArrayView magic = "i3-ipc";
/// The length of the payload and the kind, in the machine's byte order.
using Header = std::array<std::uint32_t, 2>;
constexpr qsizetype prefixLength = magic.size() + qsizetype(sizeof(Header));
/// Bytes; an event is some kilobytes.
constexpr qsizetype longestMessage = 1 << 20;

QString socketPath() {
    return qEnvironmentVariable("SWAYSOCK");
}

} // namespace

SwaySocket::SwaySocket() {
    connect(&m_socket, &QLocalSocket::connected, this, &SwaySocket::write);
    connect(&m_socket, &QLocalSocket::readyRead, this, &SwaySocket::read);
}

bool SwaySocket::isAvailable() {
    return !socketPath().isEmpty();
}

void SwaySocket::send(Kind kind, const QByteArray& payload) {
    const Header header{static_cast<std::uint32_t>(payload.size()), std::to_underlying(kind)};
    m_toSend += magic;
    m_toSend.append(reinterpret_cast<const char*>(header.data()), sizeof header);
    m_toSend += payload;
    if (m_socket.state() == QLocalSocket::ConnectedState)
        write();
    else if (m_socket.state() == QLocalSocket::UnconnectedState)
        m_socket.connectToServer(socketPath());
}

void SwaySocket::write() {
    m_socket.write(std::exchange(m_toSend, {}));
    m_socket.flush();
}

void SwaySocket::read() {
    m_received += m_socket.readAll();
    while (m_received.size() >= prefixLength) {
        Header header{};
        std::memcpy(header.data(), m_received.constData() + magic.size(), sizeof header);
        const qsizetype end = prefixLength + header[0];
        if (!m_received.startsWith(magic) || end > longestMessage)
            return m_socket.abort();
        if (m_received.size() < end)
            return;
        const QByteArray payload = m_received.sliced(prefixLength, end - prefixLength);
        m_received.remove(0, end);
        Q_EMIT received(Kind{header[1]}, payload);
    }
}

} // namespace orvane
