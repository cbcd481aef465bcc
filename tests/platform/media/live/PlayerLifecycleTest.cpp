// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/live/PlayerLifecycle.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using Phase = PlayerLifecycle::Phase;

namespace {

TEST(PlayerLifecycleTest, OpensOnceWhenWantedAndTheRendererIsSettled) {
    PlayerLifecycle player;
    player.rendererExpected();
    EXPECT_FALSE(player.play());
    player.pause();
    EXPECT_FALSE(player.rendererSettled());
    EXPECT_EQ(player.phase(), Phase::unopened);
    EXPECT_TRUE(player.play());
    EXPECT_EQ(player.phase(), Phase::opening);
    player.rendererExpected();
    EXPECT_FALSE(player.rendererSettled()) << "a second view does not open it again";
    EXPECT_FALSE(player.play());
}

TEST(PlayerLifecycleTest, PlaysWhenTheStartIsDecodedAndShown) {
    for (const bool hasVideo : {true, false}) {
        for (const bool startsFirst : {true, false}) {
            PlayerLifecycle player;
            ASSERT_TRUE(player.play());
            const auto start = [&] { return player.playbackStarted(); };
            const auto show = [&] {
                return hasVideo ? player.frameShown() : player.tracksSelected(false);
            };
            EXPECT_FALSE(startsFirst ? start() : show());
            EXPECT_EQ(player.phase(), Phase::opening);
            EXPECT_FALSE(player.shouldAdvance());
            EXPECT_TRUE(startsFirst ? show() : start());
            EXPECT_EQ(player.phase(), Phase::playing);
            EXPECT_TRUE(player.shouldAdvance());
            EXPECT_FALSE(player.frameShown()) << "reported once";
            player.pause();
            EXPECT_FALSE(player.shouldAdvance());
        }
    }
}

TEST(PlayerLifecycleTest, StaysFailedForTheFirstReason) {
    PlayerLifecycle player;
    ASSERT_TRUE(player.play());
    EXPECT_TRUE(player.fail(u"HTTP error 403 Forbidden"_s));
    EXPECT_FALSE(player.fail(u"Stream ended"_s));
    EXPECT_FALSE(player.playbackStarted() || player.frameShown() || player.play());
    EXPECT_EQ(player.phase(), Phase::failed);
    EXPECT_EQ(player.error(), u"HTTP error 403 Forbidden"_s);
}

} // namespace
} // namespace orvane
