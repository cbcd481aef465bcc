// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/LocalAddresses.h"

#include "base/Logging.h"

#include <QHostAddress>
#include <QUrl>

#include <dlfcn.h>
#include <netdb.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string_view>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

using Lookup = decltype(&::getaddrinfo);

Lookup systemLookup() {
    static const auto function = reinterpret_cast<Lookup>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return function;
}

bool isLocalAddress(QHostAddress address) {
    bool isMapped = false;
    if (const quint32 plain = address.toIPv4Address(&isMapped); isMapped)
        address = QHostAddress(plain);
    using Subnet = std::pair<QLatin1StringView, int>;
    constexpr std::array networks{Subnet{"0.0.0.0"_L1, 8},      Subnet{"10.0.0.0"_L1, 8},
                                  Subnet{"100.64.0.0"_L1, 10},  Subnet{"127.0.0.0"_L1, 8},
                                  Subnet{"169.254.0.0"_L1, 16}, Subnet{"172.16.0.0"_L1, 12},
                                  Subnet{"192.168.0.0"_L1, 16}, Subnet{"::"_L1, 127},
                                  Subnet{"fc00::"_L1, 7},       Subnet{"fe80::"_L1, 10}};
    return std::ranges::any_of(networks, [&](const Subnet& network) {
        return address.isInSubnet(QHostAddress(network.first), network.second);
    });
}

std::atomic_bool isKeptFromLocalHosts = false;

/// The environment's proxy, as FFmpeg reads it.
const QString& proxyHost() {
    static const QString host = QUrl(qEnvironmentVariable("http_proxy")).host();
    return host;
}

bool isFFmpeg(const void* code) {
    Dl_info library{};
    if (dladdr(code, &library) == 0 || library.dli_fname == nullptr)
        return false;
    const std::string_view name = library.dli_fname;
    return name.contains("libavformat") || name.contains("libmpv");
}

} // namespace

bool isLocalHost(const QString& host) {
    const QString name = host.endsWith(u'.') ? host.chopped(1) : host;
    if (name.isEmpty() || name.compare(u"localhost"_s, Qt::CaseInsensitive) == 0 ||
        name.endsWith(u".localhost"_s, Qt::CaseInsensitive))
        return true;
    // The system knows notations such as 127.1, 0x7f000001 and 2130706433 too.
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST;
    addrinfo* found = nullptr;
    if (systemLookup()(name.toUtf8().constData(), nullptr, &hints, &found) != 0)
        return false;
    const bool isLocal = isLocalAddress(QHostAddress(found->ai_addr));
    freeaddrinfo(found);
    return isLocal;
}

void keepStreamsFromLocalHosts() {
    isKeptFromLocalHosts = true;
}

} // namespace orvane

extern "C" [[gnu::visibility("default")]] int
getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
    using namespace orvane;
    if (isKeptFromLocalHosts && isFFmpeg(__builtin_return_address(0))) {
        const QString host = QString::fromUtf8(node);
        if (host != proxyHost() && isLocalHost(host)) {
            qCWarning(logNetwork, "a stream leads to %s: refused", qUtf8Printable(host));
            return EAI_NONAME;
        }
    }
    return systemLookup()(node, service, hints, result);
}
