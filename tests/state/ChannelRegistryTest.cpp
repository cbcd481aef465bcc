// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/StateFixture.h"

#include <gtest/gtest.h>

namespace orvane {

using enum ChannelStep;

namespace {

TEST(ChannelRegistryTest, StepsThroughTheEnabledChannelsAsARing) {
    test::StateFixture with;
    const QList<Channel> all = with.registry.all();
    const auto neighbor = [&](const std::optional<Channel>& from, ChannelStep step) {
        const auto channel = with.registry.enabledNeighbor(from, step);
        return channel ? channel->id() : QString();
    };
    with.preferences.setEnabledChannelIDs({all.at(1).id(), all.at(4).id(), all.at(7).id()});
    struct Case {
        std::optional<Channel> from;
        ChannelStep step;
        qsizetype expected;
    };
    for (const auto& [from, step, expected] : {
             Case{all.at(1), next, 4},
             Case{all.at(7), next, 1},
             Case{all.at(1), previous, 7},
             // The first enabled channel stands in for one that is not enabled.
             Case{std::nullopt, next, 4},
             Case{all.at(5), next, 4},
             Case{all.at(5), previous, 7},
         })
        EXPECT_EQ(neighbor(from, step), all.at(expected).id());
    with.preferences.setEnabledChannelIDs({all.at(4).id()});
    EXPECT_EQ(neighbor(all.at(4), next), all.at(4).id());
    with.preferences.setEnabledChannelIDs({});
    EXPECT_EQ(neighbor(all.at(4), next), QString());
}

} // namespace
} // namespace orvane
