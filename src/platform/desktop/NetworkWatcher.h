// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QSet>
#include <QSocketNotifier>
#include <QString>

#include <memory>

namespace orvane {

/// Tells when the machine has got an address through which others may be reached (a cable was
/// plugged in, a radio link is up again, a tunnel stands) and when it has none any more. It hears
/// that from the kernel, whatever manages the network. Owned by whoever integrates the program into
/// the desktop; main thread. Where the kernel tells nothing it stays silent.
class NetworkWatcher final : public QObject {
    Q_OBJECT

public:
    NetworkWatcher();
    ~NetworkWatcher() override;

    void start();

Q_SIGNALS:
    /// More than once in a row when several addresses come one after the other.
    void addressGained();
    void lastAddressLost();

private:
    void hear();

    int m_socket = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QSet<QString> m_usable;
};

} // namespace orvane
