// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/windowing/SwayPlacement.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <cstring>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView magic = "i3-ipc";
constexpr std::uint32_t runCommand = 0;
constexpr std::uint32_t subscribe = 2;
constexpr std::uint32_t windowEvent = 0x80000003;
/// The length of the payload and the type, in the machine's byte order.
using Header = std::array<std::uint32_t, 2>;
constexpr qsizetype prefixLength = magic.size() + qsizetype(sizeof(Header));
/// Bytes; an event is some kilobytes.
constexpr qsizetype longestMessage = 1 << 20;

QString socketPath() {
    return qEnvironmentVariable("SWAYSOCK");
}

/// Whether sway tells of this window, which it has just taken notice of.
bool isNewWindow(const QByteArray& event, std::uint32_t window) {
    const QJsonObject object = QJsonDocument::fromJson(event).object();
    return object[u"change"_s] == u"new"_s &&
           object[u"container"_s][u"window"_s].toInteger() == window;
}

} // namespace

SwayPlacement::SwayPlacement() {
    connect(&m_socket, &QLocalSocket::connected, this, [this] {
        send(subscribe, R"(["window"])");
        send(runCommand, m_command);
    });
    connect(&m_socket, &QLocalSocket::readyRead, this, &SwayPlacement::read);
}

bool SwayPlacement::isAvailable() {
    return !socketPath().isEmpty();
}

void SwayPlacement::place(std::uint32_t window, const QRect& frame) {
    m_window = window;
    m_command = u"[id=%1] floating enable, border none, sticky enable, resize set width %2 px "
                u"height %3 px, "
                u"move absolute position %4 px %5 px"_s.arg(window)
                    .arg(frame.width())
                    .arg(frame.height())
                    .arg(frame.x())
                    .arg(frame.y())
                    .toUtf8();
    if (m_socket.state() == QLocalSocket::ConnectedState)
        send(runCommand, m_command);
    else if (m_socket.state() == QLocalSocket::UnconnectedState)
        m_socket.connectToServer(socketPath());
}

void SwayPlacement::send(std::uint32_t type, const QByteArray& payload) {
    const Header header{static_cast<std::uint32_t>(payload.size()), type};
    m_socket.write(magic.data(), magic.size());
    m_socket.write(reinterpret_cast<const char*>(header.data()), sizeof header);
    m_socket.write(payload);
    m_socket.flush();
}

void SwayPlacement::read() {
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
        if (header[1] == windowEvent && isNewWindow(payload, m_window))
            send(runCommand, m_command);
    }
}

} // namespace orvane
