// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ChannelHealing.h"

#include "base/TaskScope.h"
#include "playback/HealingPolicy.h"
#include "state/AppNotification.h"
#include "support/FakeClock.h"
#include "support/RecordingPlayer.h"
#include "support/StateFixture.h"

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class ChannelHealingTest : public testing::Test, protected test::StateFixture {
protected:
    ChannelHealingTest() {
        state.setTransport(Transport::playing);
        state.setCurrentChannel(channel);
    }

    void fail(const QString& text = u"Stream ended"_s) {
        if (!std::holds_alternative<PlaybackState::Playing>(state.playbackState()))
            state.setLoading(*state.currentChannel());
        state.setError(*state.currentChannel(), text);
    }
    /// Returns whether the channel is tried again after exactly this time.
    [[nodiscard]] bool isTriedAfter(std::chrono::seconds time) {
        for (auto passed = 0s; passed < time; passed += 1s) {
            if (!player.takeCalls().isEmpty())
                return false;
            clock.advance(1s);
        }
        return player.takeCalls() == QStringList{u"retry"_s};
    }

    test::FakeClock clock{test::FakeClock::Sleep::waitsForTest};
    TaskScope tasks;
    test::RecordingPlayer player;
    ChannelHealing healing{state, player, notifications, clock, tasks};
    const Channel channel = Channel::custom(u"a"_s, u"A"_s);
    const Channel other = Channel::custom(u"b"_s, u"B"_s);
};

TEST_F(ChannelHealingTest, TriesAgainWithGrowingDelaysUntilTheChannelIsWell) {
    for (const auto delay : {5s, 15s, 60s, 120s, 120s}) {
        fail();
        EXPECT_TRUE(isTriedAfter(delay)) << delay.count();
    }
    state.setPlaying(channel);
    clock.advance(59s);
    fail();
    EXPECT_TRUE(isTriedAfter(120s)) << "has not played for long";
    state.setPlaying(channel);
    clock.advance(60s);
    fail();
    EXPECT_TRUE(isTriedAfter(5s));
    fail(u"ERROR: [site] abc: This live event will begin in 2 hours"_s);
    EXPECT_TRUE(isTriedAfter(300s));
    state.setCurrentChannel(other);
    fail();
    EXPECT_TRUE(isTriedAfter(5s));
}

TEST_F(ChannelHealingTest, EndsWhenTheUserDoesSomethingElse) {
    const std::function<void()> endings[] = {
        [this] { state.setTransport(Transport::stopped); },
        [this] { state.setTransport(Transport::paused); },
        [this] { state.setLoading(other); },
    };
    for (const auto& end : endings) {
        state.setTransport(Transport::playing);
        fail();
        end();
        clock.advance(10min);
        EXPECT_TRUE(player.takeCalls().isEmpty());
        healing.tryNow();
        EXPECT_TRUE(player.takeCalls().isEmpty());
    }
    // After a pause it goes on.
    fail();
    state.setTransport(Transport::paused);
    state.setTransport(Transport::playing);
    EXPECT_TRUE(isTriedAfter(5s));
}

TEST_F(ChannelHealingTest, AnnouncesTheRemainingSeconds) {
    QStringList announced;
    const auto token = notifications.addObserver(
        AppNotification::retryCountdown, [&](std::optional<std::chrono::seconds> remaining) {
            announced += remaining ? QString::number(remaining->count()) : u"none"_s;
        });
    fail();
    clock.advance(1s);
    clock.advance(1s);
    // A machine that was asleep does not count on from before.
    clock.suspend(1h);
    clock.advance(1s);
    EXPECT_EQ(player.takeCalls(), QStringList{u"retry"_s});
    state.setLoading(channel);
    EXPECT_EQ(announced, (QStringList{u"5"_s, u"4"_s, u"3"_s, u"none"_s}));
    fail();
    healing.tryNow();
    EXPECT_EQ(player.takeCalls(), QStringList{u"retry"_s});
}

} // namespace
} // namespace orvane
