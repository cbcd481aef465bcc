// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NotificationCenter.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace orvane {
namespace {

constexpr Topic<> ping{"test.ping"};
constexpr Topic<> pong{"test.pong"};

TEST(NotificationCenter, DeliversInOrderUntilTheTokenIsDestroyed) {
    NotificationCenter center;
    std::string log;
    const auto first = center.addObserver(ping, [&] { log += 'a'; });
    std::optional second = center.addObserver(ping, [&] { log += 'b'; });
    const auto other = center.addObserver(pong, [&] { log += 'x'; });
    center.post(ping);
    second.reset();
    center.post(ping);
    EXPECT_EQ(log, "aba");
}

TEST(NotificationCenter, PassesThePayloadToHandlersThatTakeIt) {
    constexpr Topic<int> number{"test.number"};
    NotificationCenter center;
    std::vector<int> seen;
    const auto reader = center.addObserver(number, [&](int value) { seen.push_back(value); });
    const auto others = center.addObservers([&] { seen.push_back(-1); }, ping, number);
    center.post(number, 7);
    center.post(ping);
    EXPECT_EQ(seen, (std::vector{7, -1, -1}));
}

TEST(NotificationCenter, AllowsAddingAndRemovingObserversDuringDelivery) {
    std::string log;
    // Declared before the center, which tokens may outlive.
    std::optional<NotificationCenter::Token> self;
    std::optional<NotificationCenter::Token> later;
    std::optional<NotificationCenter::Token> added;
    NotificationCenter center;
    self = center.addObserver(ping, [&] {
        log += 'a';
        self.reset();
        later.reset();
        added = center.addObserver(ping, [&] { log += 'c'; });
        center.post(pong);
    });
    later = center.addObserver(ping, [&] { log += 'b'; });
    const auto nested = center.addObserver(pong, [&] { log += 'n'; });
    center.post(ping);
    EXPECT_EQ(log, "an");
    center.post(ping);
    EXPECT_EQ(log, "anc");
}

} // namespace
} // namespace orvane
