// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ScreenKeeper.h"

#include "app/Services.h"
#include "platform/desktop/ScreenSaverInhibitor.h"
#include "support/ManualClock.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct FakeInhibitor final : ScreenSaverInhibitor {
    void inhibit() override { isAwake = true; }
    void release() override { isAwake = false; }
    bool isAwake = false;
};

TEST(ScreenKeeperTest, KeepsTheScreenAwakeWhileAChannelPlaysAndForAWhileWhenItLoads) {
    const QTemporaryDir folder;
    Services services{Environment{}, folder.filePath(u"preferences.json"_s), VideoOutput::software};
    AppState& state = services.state;
    test::ManualClock clock;
    FakeInhibitor screen;
    const ScreenKeeper keeper(state, services.notifications, screen, clock, services.tasks);
    const Channel channel = Channel::custom(u"a"_s, u"A"_s);

    state.setTransport(Transport::playing);
    state.setLoading(channel);
    EXPECT_FALSE(screen.isAwake) << "there was nothing to see yet";
    state.setPlaying(channel);
    EXPECT_TRUE(screen.isAwake);
    state.setTransport(Transport::paused);
    EXPECT_FALSE(screen.isAwake);
    state.setTransport(Transport::playing);
    EXPECT_TRUE(screen.isAwake);

    // Refused over and over: from the first loading on.
    state.setLoading(channel);
    clock.advance(59s);
    state.setLoading(channel);
    EXPECT_TRUE(screen.isAwake);
    clock.advance(1s);
    EXPECT_FALSE(screen.isAwake);
    state.setPlaying(channel);
    state.setLoading(channel);
    state.setPlaying(channel);
    clock.advance(10min);
    EXPECT_TRUE(screen.isAwake);
    state.setLoading(channel);
    state.setError(channel, u"gone"_s);
    EXPECT_FALSE(screen.isAwake);
}

} // namespace
} // namespace orvane
