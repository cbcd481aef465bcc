// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDescriptor.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>

namespace orvane {

/// Finds out whether a D-Bus bus answers, since libdbus waits for one that does not, for ever.
/// Sends what every client sends first, and waits for the answer. A value; any thread.
class BusProbe {
public:
    /// Does not wait.
    explicit BusProbe(const QString& address);

    /// Waits for at most `limit`. Returns whether something accepts connections at the address but
    /// has not answered; false also if nothing does, or if the address is not that of a local
    /// socket.
    [[nodiscard]] bool isSilent(std::chrono::milliseconds limit);

private:
    [[nodiscard]] bool isAnswered() const;

    FileDescriptor m_socket;
    QByteArray m_received;
};

/// Keeps Qt away from a session bus that accepts connections but does not answer, as Qt waits for
/// it on the main thread, for ever: its accessibility, tray icon and portals then do without the
/// bus for this run, with one line on the standard error. The program's own connection is not
/// concerned. Used by `main`; main thread.
class SilentBusDetour {
public:
    /// `address` is that of the session bus. Before there is an application object. Waits for the
    /// bus if it does not answer at once.
    explicit SilentBusDetour(const QString& address);
    /// When there is one. From now on children find the bus again.
    void end();

private:
    /// The variable as it was; nullopt without a detour.
    std::optional<QByteArray> m_address;
};

} // namespace orvane
