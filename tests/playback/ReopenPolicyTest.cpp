// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ReopenPolicy.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane {

using namespace std::chrono_literals;
using Situation = ReopenPolicy::Situation;
using Step = ReopenPolicy::Step;
using Time = ReopenPolicy::Time;

namespace {

class ReopenPolicyTest : public testing::Test {
protected:
    /// Polls every 100 ms; returns the times at which the channel is to be reopened.
    std::vector<Time> reopenings(Situation situation, Time since, Time end) {
        std::vector<Time> times;
        for (; now < end; now += 100ms) {
            const Step step = policy.step(situation, since, now);
            if (step == Step::reopen)
                times.push_back(now);
            isFinished = step == Step::finish;
        }
        return times;
    }
    void returnAt(Time time) {
        now = time;
        policy.returned(now);
    }
    using Times = std::vector<Time>;

    ReopenPolicy policy;
    Time now{};
    bool isFinished = false;
};

TEST_F(ReopenPolicyTest, ReopensOnceForSeveralSignsOfAReturn) {
    returnAt(10s);
    EXPECT_EQ(reopenings(Situation::loading, 5s, 10'500ms), Times{});
    returnAt(10'500ms);
    EXPECT_EQ(reopenings(Situation::loading, 5s, 11'200ms), Times{11'100ms});
    // Another sign while it loads, such as a second network address.
    returnAt(13s);
    EXPECT_EQ(reopenings(Situation::loading, 11'100ms, 20s), Times{});
}

TEST_F(ReopenPolicyTest, LeavesAPlayingOrInactiveChannelAlone) {
    for (const Situation situation : {Situation::playing, Situation::inactive}) {
        returnAt(100s);
        EXPECT_EQ(reopenings(situation, 1s, 161s), Times{});
        EXPECT_TRUE(isFinished);
    }
    returnAt(100s);
    for (int hiccup = 0; hiccup < 3; ++hiccup) {
        EXPECT_EQ(reopenings(Situation::stuck, 1s, now + 2s), Times{});
        EXPECT_EQ(reopenings(Situation::playing, 1s, now + 1s), Times{});
    }
    EXPECT_EQ(reopenings(Situation::stuck, 1s, now + 1'900ms), Times{});
    returnAt(now);
    EXPECT_EQ(reopenings(Situation::stuck, 1s, now + 2s), Times{}) << "it may recover by itself";
    EXPECT_EQ(reopenings(Situation::stuck, 1s, now + 100ms).size(), 1);
    returnAt(200s);
    EXPECT_EQ(reopenings(Situation::loading, 197s, 205s), Times{});
    returnAt(210s);
    EXPECT_EQ(reopenings(Situation::loading, 197s, 210'700ms), Times{210'600ms});
}

TEST_F(ReopenPolicyTest, GivesUpAfterFourAttemptsOrAMinute) {
    returnAt(10s);
    EXPECT_EQ(reopenings(Situation::stuck, 5s, 30s), (Times{12s, 14'100ms, 16'200ms, 18'300ms}));
    EXPECT_TRUE(isFinished);
    returnAt(100s);
    EXPECT_EQ(reopenings(Situation::playing, 1s, 160'100ms), Times{});
    EXPECT_FALSE(isFinished);
    EXPECT_EQ(reopenings(Situation::stuck, 1s, 170s), Times{});
    EXPECT_TRUE(isFinished);
}

} // namespace
} // namespace orvane
