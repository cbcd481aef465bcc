// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QLocalSocket>
#include <QObject>
#include <QRect>

#include <cstdint>

namespace orvane {

/// Has sway put a window where it wants to be: sway centres the windows of X11 programs whatever
/// they ask for, but takes commands through a socket. Owned by the floating window; main thread,
/// which it never blocks. Does nothing in other sessions, and fails silently.
class SwayPlacement final : public QObject {
    Q_OBJECT

public:
    SwayPlacement();

    /// Whether the session is sway's.
    [[nodiscard]] static bool isAvailable();

    /// Places the X11 window, in pixels, and shows it on all workspaces. Once more when sway has
    /// taken notice of a window that is just appearing, which is after the X server has.
    void place(std::uint32_t window, const QRect& frame);

private:
    void send(std::uint32_t type, const QByteArray& payload);
    void read();

    QLocalSocket m_socket;
    QByteArray m_received;
    std::uint32_t m_window = 0;
    QByteArray m_command;
};

} // namespace orvane
