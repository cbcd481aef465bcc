// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NotificationCenter.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace orvane {
namespace {

constexpr NotificationCenter::Name ping{"test.ping"};
constexpr NotificationCenter::Name pong{"test.pong"};

TEST(NotificationCenter, DeliversInOrderUntilTheTokenGoes) {
    NotificationCenter center;
    std::string log;
    const auto first = center.addObserver(ping, [&](const auto&) { log += 'a'; });
    std::optional second = center.addObserver(ping, [&](const auto&) { log += 'b'; });
    const auto other = center.addObserver(pong, [&](const auto&) { log += 'x'; });
    center.post(ping);
    second.reset();
    center.post(ping);
    EXPECT_EQ(log, "aba");
}

TEST(NotificationCenter, CarriesAnObjectOrNone) {
    NotificationCenter center;
    std::vector<int> seen;
    const auto token = center.addObserver(ping, [&](const auto& n) {
        const int* number = std::any_cast<int>(&n.object);
        seen.push_back(number != nullptr ? *number : -1);
    });
    center.post(ping, 7);
    center.post(ping);
    EXPECT_EQ(seen, (std::vector{7, -1}));
}

TEST(NotificationCenter, ObserversMayComeAndGoDuringDelivery) {
    NotificationCenter center;
    std::string log;
    std::optional<NotificationCenter::Token> self;
    std::optional<NotificationCenter::Token> later;
    std::optional<NotificationCenter::Token> added;
    self = center.addObserver(ping, [&](const auto&) {
        log += 'a';
        self.reset();
        later.reset();
        added = center.addObserver(ping, [&](const auto&) { log += 'c'; });
        center.post(pong);
    });
    later = center.addObserver(ping, [&](const auto&) { log += 'b'; });
    const auto nested = center.addObserver(pong, [&](const auto&) { log += 'n'; });
    center.post(ping);
    EXPECT_EQ(log, "an");
    center.post(ping);
    EXPECT_EQ(log, "anc");
}

TEST(NotificationCenter, TokensMayOutliveIt) {
    std::optional<NotificationCenter::Token> token;
    {
        NotificationCenter center;
        token = center.addObserver(ping, [](const auto&) {});
    }
    token.reset();
}

} // namespace
} // namespace orvane
