// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/NetworkWatcher.h"

#include <QHostAddress>

#include <ifaddrs.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <memory>

namespace orvane {

namespace {

int openSocket() {
    const int number = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR;
    const auto* any = reinterpret_cast<const sockaddr*>(&address);
    if (number >= 0 && ::bind(number, any, sizeof address) == 0)
        return number;
    if (number >= 0)
        ::close(number);
    return -1;
}

/// Each with the interface that it belongs to; an address stays while the cable is out.
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

NetworkWatcher::~NetworkWatcher() {
    m_notifier.reset();
    if (m_socket >= 0)
        ::close(m_socket);
}

void NetworkWatcher::start() {
    m_socket = openSocket();
    if (m_socket < 0)
        return;
    m_usable = usableAddresses();
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &NetworkWatcher::hear);
}

void NetworkWatcher::hear() {
    // What has changed is seen from what there is now; messages may have been lost anyway.
    std::array<char, 8192> messages{};
    while (::recv(m_socket, messages.data(), messages.size(), 0) > 0) {
    }
    const QSet<QString> before = std::exchange(m_usable, usableAddresses());
    if (!before.contains(m_usable))
        Q_EMIT addressGained();
    else if (m_usable.isEmpty() && !before.isEmpty())
        Q_EMIT lastAddressLost();
}

} // namespace orvane
