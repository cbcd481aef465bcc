// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/NetworkWatcher.h"

#include "base/Logging.h"

#include <QHostAddress>

#include <ifaddrs.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/socket.h>

#include <array>
#include <memory>

namespace orvane {

namespace {

/// Returns a closed descriptor on any error.
FileDescriptor openSocket() {
    FileDescriptor socket(
        ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR;
    const auto* any = reinterpret_cast<const sockaddr*>(&address);
    if (::bind(socket.get(), any, sizeof address) != 0)
        socket.reset();
    return socket;
}

/// Each with the name of its interface. Interfaces that are not running are skipped, because they
/// keep their addresses while the cable is unplugged.
QSet<QString> usableAddresses() {
    ifaddrs* all = nullptr;
    if (::getifaddrs(&all) != 0)
        return {};
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(all, ::freeifaddrs);
    QSet<QString> usable;
    for (const ifaddrs* entry = all; entry != nullptr; entry = entry->ifa_next) {
        constexpr unsigned wanted = IFF_UP | IFF_RUNNING;
        if ((entry->ifa_flags & (wanted | IFF_LOOPBACK)) != wanted || entry->ifa_addr == nullptr)
            continue;
        const QHostAddress address(entry->ifa_addr);
        if (!address.isNull() && !address.isLinkLocal())
            usable.insert(QString::fromLocal8Bit(entry->ifa_name) + u' ' + address.toString());
    }
    return usable;
}

} // namespace

NetworkWatcher::NetworkWatcher() = default;

NetworkWatcher::~NetworkWatcher() = default;

void NetworkWatcher::start() {
    m_socket = openSocket();
    if (!m_socket.isOpen()) {
        qCWarning(logNetwork) << "no messages about addresses from the kernel";
        return;
    }
    m_usable = usableAddresses();
    m_notifier = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &NetworkWatcher::update);
}

void NetworkWatcher::update() {
    // Messages may have been lost, so the addresses are read anew instead.
    std::array<char, 8192> messages{};
    while (::recv(m_socket.get(), messages.data(), messages.size(), 0) > 0) {
    }
    const QSet<QString> before = std::exchange(m_usable, usableAddresses());
    if (!before.contains(m_usable)) {
        qCInfo(logNetwork) << "gained an address, now" << m_usable.size();
        Q_EMIT addressGained();
    } else if (m_usable.isEmpty() && !before.isEmpty()) {
        qCInfo(logNetwork) << "lost the last address";
        Q_EMIT lastAddressLost();
    }
}

} // namespace orvane
