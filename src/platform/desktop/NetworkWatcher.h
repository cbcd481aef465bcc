// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/FileDescriptor.h"

#include <QObject>
#include <QSet>
#include <QSocketNotifier>
#include <QString>

#include <memory>

namespace orvane {

/// Reports when the machine gains an address with which it can reach others (a cable is plugged in,
/// Wi-Fi or a VPN has connected) and when it loses the last one. Listens to the kernel, so that it
/// works with any network manager. Owned by `DesktopIntegration`; main thread. Silent where the
/// kernel sends no such messages.
class NetworkWatcher final : public QObject {
    Q_OBJECT

public:
    NetworkWatcher();
    ~NetworkWatcher() override;

    void start();

Q_SIGNALS:
    /// Repeated when several addresses are gained one after the other.
    void addressGained();
    void lastAddressLost();

private:
    void update();

    FileDescriptor m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QSet<QString> m_usable;
};

} // namespace orvane
