// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/LocalAddresses.h"

#include <gtest/gtest.h>

namespace orvane {

TEST(LocalAddressesTest, KnowsThisMachineAndItsNetworkInEveryNotation) {
    for (const char* host : {"",
                             "127.0.0.1",
                             "127.1",
                             "0x7f.1",
                             "017700000001",
                             "2130706433",
                             "0.0.0.0",
                             "::1",
                             "::",
                             "::ffff:192.168.1.1",
                             "10.0.0.1",
                             "172.31.0.1",
                             "192.168.0.1",
                             "169.254.169.254",
                             "100.64.0.1",
                             "fe80::1",
                             "fd00::1",
                             "LocalHost",
                             "localhost.",
                             "a.localhost"})
        EXPECT_TRUE(isLocalHost(QString::fromLatin1(host))) << host;
    for (const char* host :
         {"www.youtube.com", "10.example.org", "localhost.example.org", "8.8.8.8", "172.32.0.1",
          "192.169.0.1", "100.128.0.1", "2001:4860:4860::8888", "::ffff:8.8.8.8"})
        EXPECT_FALSE(isLocalHost(QString::fromLatin1(host))) << host;
}

} // namespace orvane
