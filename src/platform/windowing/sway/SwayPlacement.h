// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/windowing/sway/SwaySocket.h"

#include <QByteArray>
#include <QObject>
#include <QRect>

#include <cstdint>

namespace orvane {

/// Has sway put a window where it wants to be: sway centres the windows of X11 programs whatever
/// they ask for, but takes commands through a socket. Owned by the floating window; main thread,
/// which it never blocks. Fails silently.
class SwayPlacement final : public QObject {
    Q_OBJECT

public:
    SwayPlacement();

    /// Places the X11 window of this process, in pixels, and shows it on all workspaces. Once more
    /// when sway has taken notice of a window that is just appearing, which is after the X server
    /// has.
    void place(std::uint32_t window, const QRect& frame);

private:
    SwaySocket m_sway;
    std::uint32_t m_window = 0;
    QByteArray m_command;
};

} // namespace orvane
