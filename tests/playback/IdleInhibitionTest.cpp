// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/IdleInhibition.h"

#include "base/TaskScope.h"
#include "platform/desktop/ScreenSaverInhibitor.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "state/AppState.h"
#include "support/FakeClock.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct FakeInhibitor final : ScreenSaverInhibitor {
    void inhibit() override { isInhibited = true; }
    void release() override { isInhibited = false; }
    bool isInhibited = false;
};

TEST(IdleInhibition, LastsWhileAChannelPlaysAndForALimitedTimeWhileItLoads) {
    const QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(u"preferences.json"_s)};
    Preferences preferences{defaults};
    NotificationCenter notifications;
    AppState state{preferences, notifications};
    TaskScope tasks;
    test::FakeClock clock{test::FakeClock::Sleep::waitsForTest};
    FakeInhibitor screen;
    const IdleInhibition inhibition(state, notifications, screen, clock, tasks);
    const Channel channel = Channel::custom(u"a"_s, u"A"_s);

    state.setTransport(Transport::playing);
    state.setLoading(channel);
    EXPECT_FALSE(screen.isInhibited) << "nothing has played yet";
    state.setPlaying(channel);
    EXPECT_TRUE(screen.isInhibited);
    state.setTransport(Transport::paused);
    EXPECT_FALSE(screen.isInhibited);
    state.setTransport(Transport::playing);
    EXPECT_TRUE(screen.isInhibited);

    // The time counts from the first attempt when a channel is refused repeatedly.
    state.setLoading(channel);
    clock.advance(59s);
    state.setLoading(channel);
    EXPECT_TRUE(screen.isInhibited);
    clock.advance(1s);
    EXPECT_FALSE(screen.isInhibited);
    state.setPlaying(channel);
    state.setLoading(channel);
    state.setPlaying(channel);
    clock.advance(10min);
    EXPECT_TRUE(screen.isInhibited);
    state.setLoading(channel);
    state.setError(channel, u"gone"_s);
    EXPECT_FALSE(screen.isInhibited);
}

} // namespace
} // namespace orvane
