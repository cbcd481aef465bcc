// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>

#include <cstdint>

namespace orvane {

/// A connection to the socket through which sway takes commands and tells about its windows. Owned
/// by whoever talks to sway; main thread, which it never blocks. Does nothing in other sessions,
/// and fails silently.
class SwaySocket final : public QObject {
    Q_OBJECT

public:
    /// The kinds of messages, by sway's numbers. An answer has the kind of its request.
    enum class Kind : std::uint32_t {
        runCommand = 0,
        getWorkspaces = 1,
        subscribe = 2,
        windowEvent = 0x80000003
    };

    SwaySocket();

    /// Whether the session is sway's.
    [[nodiscard]] static bool isAvailable();

    /// Connects first where needed.
    void send(Kind kind, const QByteArray& payload = {});

Q_SIGNALS:
    void received(orvane::SwaySocket::Kind kind, const QByteArray& payload);

private:
    void write();
    void read();

    QLocalSocket m_socket;
    QByteArray m_toSend;
    QByteArray m_received;
};

} // namespace orvane
