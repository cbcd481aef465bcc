// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ChannelHealing.h"

#include "base/TaskScope.h"
#include "state/AppNotification.h"
#include "support/FakeClock.h"
#include "support/RecordingPlayer.h"
#include "support/StateFixture.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

class ChannelHealingTest : public testing::Test, protected test::StateFixture {
protected:
    ChannelHealingTest() {
        state.setPlayerShown(true);
        open(channel);
    }
    ~ChannelHealingTest() override {
        state.setTransport(Transport::stopped);
        clock.advance({});
        EXPECT_EQ(tasks.count(), 0);
    }

    /// Announces what the player manager announces.
    void open(const Channel& which) {
        state.setLoading(which);
        state.setCurrentChannel(which);
        state.setTransport(Transport::playing);
    }
    void fail(const QString& text = u"Stream ended"_s) { state.setError(channel, text); }

    /// Returns the time until the next attempt; the attempt is then loading.
    std::optional<milliseconds> nextAttempt(milliseconds limit = 10min) {
        for (milliseconds waited{}; waited <= limit; waited += 100ms) {
            const QStringList calls = player.takeCalls();
            if (!calls.isEmpty()) {
                EXPECT_EQ(calls, QStringList{u"retry"_s});
                EXPECT_EQ(countdown, std::nullopt);
                open(channel);
                return waited;
            }
            clock.advance(100ms);
        }
        return std::nullopt;
    }
    std::optional<milliseconds> nextAttemptAfter(const QString& text) {
        fail(text);
        return nextAttempt();
    }

    const Channel channel = Channel::custom(u"a"_s, u"A"_s);
    test::FakeClock clock{test::FakeClock::Sleep::waitsForTest};
    TaskScope tasks;
    test::RecordingPlayer player;
    ChannelHealing healing{state, player, notifications, clock, tasks};
    std::optional<std::chrono::seconds> countdown;
    const NotificationCenter::Token token = notifications.addObserver(
        AppNotification::retryCountdown,
        [this](std::optional<std::chrono::seconds> left) { countdown = left; });
};

TEST_F(ChannelHealingTest, WaitsLongerWithEveryFailureUntilTheChannelHasPlayedWell) {
    const QString notLive = u"ERROR: [youtube:tab] @a: The channel is not currently live"_s;
    const QString bot = u"ERROR: [youtube] a: Sign in to confirm you’re not a bot."_s;
    for (const milliseconds delay : {5'000ms, 15'000ms, 60'000ms, 120'000ms, 120'000ms})
        EXPECT_EQ(nextAttemptAfter(u"Stream ended"_s), delay);
    EXPECT_EQ(nextAttemptAfter(notLive), 5min);
    state.setPlaying(channel);
    clock.advance(59s);
    EXPECT_EQ(nextAttemptAfter(u"Stream stalled"_s), 2min) << "it has hardly played";
    state.setPlaying(channel);
    clock.advance(1min);
    EXPECT_EQ(nextAttemptAfter(u"Stream ended"_s), 5s);
    // The user's own attempt is one of the series.
    fail();
    open(channel);
    EXPECT_EQ(nextAttemptAfter(u"Stream ended"_s), 1min);
    EXPECT_EQ(nextAttemptAfter(bot), 5min);
    // Another channel, and back.
    open(Channel::custom(u"b"_s, u"B"_s));
    open(channel);
    EXPECT_EQ(nextAttemptAfter(u"Stream ended"_s), 5s);
}

TEST_F(ChannelHealingTest, AnnouncesTheRemainingSeconds) {
    fail();
    EXPECT_EQ(countdown, 5s);
    clock.advance(999ms);
    EXPECT_EQ(countdown, 5s);
    clock.advance(1ms);
    EXPECT_EQ(countdown, 4s);
    clock.suspend(2s);
    clock.advance(1s);
    EXPECT_EQ(countdown, 1s);
    clock.suspend(1h);
    clock.advance(1s);
    EXPECT_EQ(player.takeCalls(), QStringList{u"retry"_s});
    EXPECT_EQ(countdown, std::nullopt);
}

TEST_F(ChannelHealingTest, EndsWithASwitchAPauseOrTheWindow) {
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"switch", [&] { open(Channel::custom(u"b"_s, u"B"_s)); }},
        {"pause", [&] { state.setTransport(Transport::paused); }},
        {"hidden window", [&] { state.setPlayerShown(false); }},
        {"closed player",
         [&] {
             state.setTransport(Transport::stopped);
             state.setCurrentChannel(std::nullopt);
         }},
    };
    for (const auto& [name, end] : ends) {
        state.setPlayerShown(true);
        open(channel);
        fail();
        EXPECT_TRUE(countdown) << name;
        end();
        EXPECT_FALSE(countdown) << name;
        clock.advance({});
        EXPECT_EQ(tasks.count(), 0) << name << ": nothing ticks";
        healing.returned();
        healing.retryNow();
        EXPECT_EQ(nextAttempt(), std::nullopt) << name;
    }
}

TEST_F(ChannelHealingTest, GoesOnWithTheRestOfTheTimeWhenTheWindowIsShownAgain) {
    fail();
    state.setPlayerShown(false);
    clock.advance(2s);
    state.setPlayerShown(true);
    EXPECT_EQ(nextAttempt(), 3s);
    fail();
    state.setPlayerShown(false);
    clock.advance(1min);
    state.setPlayerShown(true);
    EXPECT_EQ(player.takeCalls(), QStringList()) << "the window is still being shown";
    clock.advance({});
    EXPECT_EQ(player.takeCalls(), QStringList{u"retry"_s});
}

TEST_F(ChannelHealingTest, TriesOnceForSeveralSignsOfAReturnThenAFewTimesInQuickSuccession) {
    for (int failure = 0; failure < 3; ++failure)
        EXPECT_TRUE(nextAttemptAfter(u"no network"_s));
    fail();
    healing.returned();
    clock.advance(500ms);
    healing.returned();
    EXPECT_EQ(nextAttempt(), 600ms);
    // A sign while it loads, such as a second network address, changes nothing.
    healing.returned();
    EXPECT_EQ(nextAttempt(1min), std::nullopt);
    healing.returned();
    for (const milliseconds delay : {1s, 2s, 4s, 5s, 15s})
        EXPECT_EQ(nextAttemptAfter(u"no network"_s), delay);
}

TEST_F(ChannelHealingTest, TriesAtOnceOnRequest) {
    EXPECT_EQ(nextAttemptAfter(u"Stream ended"_s), 5s);
    healing.retryNow();
    EXPECT_EQ(nextAttempt(), std::nullopt) << "a channel that has not failed is left alone";
    fail();
    healing.retryNow();
    EXPECT_EQ(player.takeCalls(), QStringList()) << "other observers may not have seen the error";
    clock.advance({});
    EXPECT_EQ(player.takeCalls(), QStringList{u"retry"_s});
    open(channel);
    EXPECT_EQ(nextAttemptAfter(u"Stream ended"_s), 5s);
}

} // namespace
} // namespace orvane
