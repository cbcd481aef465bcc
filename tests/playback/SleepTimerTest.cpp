// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/SleepTimer.h"

#include "base/TaskScope.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "support/FakeClock.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class SleepTimerTest : public testing::Test {
protected:
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(u"preferences.json"_s)};
    Preferences preferences{defaults};
    NotificationCenter notifications;
    AppState state{preferences, notifications};
    TaskScope tasks;
    test::FakeClock clock{test::FakeClock::Sleep::waitsForTest};
    QStringList events;
    SleepTimer timer{state, [this] { events += u"pause"_s; }, notifications, clock, tasks};

    std::vector<double> ticks;
    const NotificationCenter::Token tick = notifications.addObserver(
        AppNotification::sleepTimerTick, [this](double remaining) { ticks.push_back(remaining); });
    const NotificationCenter::Token fire =
        notifications.addObserver(AppNotification::sleepTimerFired, [this] {
            EXPECT_FALSE(timer.isActive());
            EXPECT_EQ(state.sleepTimerRemaining(), 0);
            events += u"fired"_s;
        });
    const QStringList firedOnce{u"fired"_s, u"pause"_s};
};

TEST_F(SleepTimerTest, CountsAQuarterOfAnHourDownThenFiresAndPauses) {
    timer.schedule(15);
    EXPECT_TRUE(timer.isActive());
    EXPECT_EQ(state.sleepTimerRemaining(), 900);
    EXPECT_TRUE(ticks.empty());
    for (int second = 0; second < 899; ++second)
        clock.advance(1s);
    EXPECT_EQ(events, QStringList());
    clock.advance(1s);
    EXPECT_EQ(events, firedOnce);
    ASSERT_EQ(ticks.size(), 900);
    for (int i = 0; i < 900; ++i)
        ASSERT_EQ(ticks[size_t(i)], 899 - i);
    clock.advance(5s);
    EXPECT_EQ(ticks.size(), 900);
    EXPECT_FALSE(timer.isActive());
}

TEST_F(SleepTimerTest, FiresAtTheFirstStepWithoutAnyMinutes) {
    for (const int minutes : {0, -3}) {
        timer.schedule(minutes);
        clock.advance(1s);
        EXPECT_EQ(ticks.back(), 60 * minutes - 1);
    }
    EXPECT_EQ(events, firedOnce + firedOnce);
}

TEST_F(SleepTimerTest, IsReplacedAndCancelledSilently) {
    timer.schedule(60);
    clock.advance(1s);
    timer.schedule(30);
    EXPECT_EQ(state.sleepTimerRemaining(), 1800);
    clock.advance(1s);
    EXPECT_EQ(ticks, (std::vector<double>{3599, 1799}));
    timer.cancel();
    EXPECT_EQ(state.sleepTimerRemaining(), 0);
    EXPECT_FALSE(timer.isActive());
    clock.advance(2s);
    timer.cancel();
    EXPECT_EQ(ticks.size(), 2);
    EXPECT_EQ(events, QStringList());
}

TEST_F(SleepTimerTest, CountsTheTimeForWhichTheMachineWasSuspended) {
    timer.schedule(15);
    clock.advance(1s);
    clock.suspend(10min);
    clock.advance(1s);
    EXPECT_EQ(ticks, (std::vector<double>{899, 298}));
    clock.suspend(2h);
    clock.advance(1s);
    EXPECT_EQ(ticks.back(), 0);
    EXPECT_EQ(events, firedOnce);
    EXPECT_EQ(ticks.size(), 3);
}

} // namespace
} // namespace orvane
