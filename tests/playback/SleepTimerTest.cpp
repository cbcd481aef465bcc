// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/SleepTimer.h"

#include "app/Services.h"
#include "state/AppNotification.h"
#include "support/ManualClock.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class SleepTimerTest : public testing::Test {
protected:
    QTemporaryDir folder;
    Services services{Environment{}, folder.filePath(u"preferences.json"_s), VideoOutput::software};
    test::ManualClock clock;
    SleepTimer timer{services.state, services.player, services.notifications, clock,
                     services.tasks};

    std::vector<double> ticks;
    int fired = 0;
    const NotificationCenter::Token tick = services.notifications.addObserver(
        AppNotification::sleepTimerTick, [this](double remaining) { ticks.push_back(remaining); });
    const NotificationCenter::Token fire =
        services.notifications.addObserver(AppNotification::sleepTimerFired, [this] {
            // It is over before anybody hears of it.
            EXPECT_FALSE(timer.isActive());
            EXPECT_EQ(services.state.sleepTimerRemaining(), 0);
            ++fired;
        });
};

TEST_F(SleepTimerTest, CountsAQuarterOfAnHourDownAndFiresOnce) {
    timer.schedule(15);
    EXPECT_TRUE(timer.isActive());
    EXPECT_EQ(services.state.sleepTimerRemaining(), 900);
    EXPECT_TRUE(ticks.empty());
    for (int second = 0; second < 899; ++second)
        clock.advance(1s);
    EXPECT_EQ(fired, 0);
    clock.advance(1s);
    EXPECT_EQ(fired, 1);
    ASSERT_EQ(ticks.size(), 900);
    for (int i = 0; i < 900; ++i)
        ASSERT_EQ(ticks[size_t(i)], 899 - i);
    clock.advance(5s);
    EXPECT_EQ(ticks.size(), 900);
    EXPECT_FALSE(timer.isActive());
}

TEST_F(SleepTimerTest, FiresWithItsFirstStepWhenThereIsNoTime) {
    for (const int minutes : {0, -3}) {
        timer.schedule(minutes);
        clock.advance(1s);
        EXPECT_EQ(ticks.back(), 60 * minutes - 1);
    }
    EXPECT_EQ(fired, 2);
}

TEST_F(SleepTimerTest, IsReplacedAndCancelledSilently) {
    timer.schedule(60);
    clock.advance(1s);
    timer.schedule(30);
    EXPECT_EQ(services.state.sleepTimerRemaining(), 1800);
    clock.advance(1s);
    EXPECT_EQ(ticks, (std::vector<double>{3599, 1799}));
    timer.cancel();
    EXPECT_EQ(services.state.sleepTimerRemaining(), 0);
    EXPECT_FALSE(timer.isActive());
    clock.advance(2s);
    timer.cancel();
    EXPECT_EQ(ticks.size(), 2);
    EXPECT_EQ(fired, 0);
}

TEST_F(SleepTimerTest, CountsTheTimeThatTheMachineWasSuspended) {
    timer.schedule(15);
    clock.advance(1s);
    clock.suspend(10min);
    clock.advance(1s);
    EXPECT_EQ(ticks, (std::vector<double>{899, 298}));
    clock.suspend(2h);
    clock.advance(1s);
    EXPECT_EQ(ticks.back(), 0);
    EXPECT_EQ(fired, 1);
    EXPECT_EQ(ticks.size(), 3);
}

} // namespace
} // namespace orvane
