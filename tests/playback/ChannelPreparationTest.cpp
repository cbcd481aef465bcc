// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/ChannelPreparation.h"

#include "base/TaskScope.h"
#include "platform/system/HttpClient.h"
#include "settings/WatchHistory.h"
#include "state/AppNotification.h"
#include "streaming/StreamResolver.h"
#include "streaming/tool/YtDlpTool.h"
#include "support/EventLoop.h"
#include "support/FakeClock.h"
#include "support/FakeMachine.h"
#include "support/FakeProcessRunner.h"
#include "support/StateFixture.h"

#include <QCoroTask>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::settle;

namespace {

/// The channels c0 to c9, of which the user watches one.
class ChannelPreparationTest : public testing::Test, protected test::StateFixture {
protected:
    ChannelPreparationTest() {
        machine.install(u"/usr/bin/yt-dlp"_s);
        QList<Channel> channels;
        for (int i = 0; i < 10; ++i)
            channels += channel(i);
        preferences.setCustomChannels(channels);
        QSet<QString> ids;
        for (const Channel& each : channels)
            ids.insert(each.id());
        preferences.setEnabledChannelIDs(ids);
        preferences.setFavoriteChannelIDs({});
        processes.answer = [](const ProcessRequest& request) {
            return test::printed("https://cdn.example/" +
                                 request.arguments.last().section(u'@', 1).toUtf8());
        };
        state.setPlayerShown(true);
    }
    ~ChannelPreparationTest() override {
        state.setTransport(Transport::stopped);
        settle();
        clock.advance({});
        settle();
        EXPECT_EQ(tasks.count(), 0);
    }

    static Channel channel(int number) {
        return Channel::custom(u"c%1"_s.arg(number), u"C%1"_s.arg(number));
    }
    /// What the player manager does.
    void watch(const Channel& which) {
        state.setLoading(which);
        state.setCurrentChannel(which);
        state.setTransport(Transport::playing);
        const StreamResolver::Result address =
            QCoro::waitFor(resolver.resolve(which, state.resolution(), std::stop_token()));
        ASSERT_TRUE(address);
        state.setPlaying(which);
    }
    /// Returns the channels that were asked for during this time, each marked "!" unless at idle
    /// priority.
    QString askedIn(std::chrono::milliseconds time) {
        processes.requests.clear();
        for (std::chrono::milliseconds passed{}; passed < time; passed += 1s) {
            clock.advance(1s);
            settle();
        }
        QStringList handles;
        for (const ProcessRequest& request : processes.requests) {
            const bool isIdle = request.priority == ProcessRequest::Priority::idle;
            handles += request.arguments.last().section(u'@', 1).section(u'/', 0, 0) +
                       (isIdle ? u""_s : u"!"_s);
        }
        return handles.join(u' ');
    }

    test::FakeMachine machine;
    test::FakeClock clock{test::FakeClock::Sleep::waitsForTest};
    test::FakeProcessRunner processes;
    HttpClient http{u"test"_s};
    TaskScope tasks;
    YtDlpTool tool{machine.host(), processes, clock, http, {}};
    StreamLadder ladder{{}, clock};
    StreamResolver resolver{Origin::parse(u"https://site.example"_s), tool, ladder, clock, tasks};
    UserDefaults watchedDays{folder.filePath(u"watched.json"_s)};
    WatchHistory history{watchedDays};
    ChannelPreparation preparation{{.state = state,
                                    .registry = registry,
                                    .preferences = preferences,
                                    .history = history,
                                    .resolver = resolver,
                                    .notifications = notifications,
                                    .clock = clock,
                                    .tasks = tasks}};
};

TEST_F(ChannelPreparationTest, PreparesBothNeighboursAndTheFavouritesWatchedLongest) {
    const QDate today = QDate::currentDate();
    for (int i = 3; i < 7; ++i)
        history.add(channel(i).id(), std::chrono::seconds(i), today.addDays(-29));
    history.add(channel(8).id(), 1h, today.addDays(-31));
    history.add(channel(3).id(), 4s, today);
    preferences.setFavoriteChannelIDs(
        {channel(3).id(), channel(4).id(), channel(5).id(), channel(7).id(), channel(8).id()});
    watch(channel(1));
    EXPECT_EQ(askedIn(4s), u""_s) << "it has hardly played";
    EXPECT_EQ(askedIn(10s), u"c2 c0 c3 c5"_s);
    EXPECT_TRUE(resolver.freshUntil(channel(2), state.resolution()));
    EXPECT_EQ(askedIn(1h), u""_s) << "nobody has switched for a long time";

    processes.requests.clear();
    watch(channel(1));
    EXPECT_EQ(history.mostWatched({channel(1).id(), channel(3).id()}, 1, today),
              QStringList{channel(1).id()})
        << "what was watched is counted";
}

TEST_F(ChannelPreparationTest, RenewsOnlyWhileTheUserSwitches) {
    watch(channel(1));
    EXPECT_EQ(askedIn(10s), u"c2 c0"_s);
    clock.advance(14min);
    watch(channel(2));
    EXPECT_EQ(askedIn(20s), u"c3"_s) << "c1 has just played, and its address is valid";
    // Both expire, one of them more than ten minutes after the last switch.
    EXPECT_EQ(askedIn(9min), u"c1"_s);
    EXPECT_EQ(askedIn(1h), u""_s);
}

TEST_F(ChannelPreparationTest, AsksAtMostEightTimesInAQuarterOfAnHour) {
    processes.answer = [](const ProcessRequest& request) {
        return request.priority == ProcessRequest::Priority::idle
                   ? test::printed({}, "ERROR: not live", 1)
                   : test::printed("https://cdn.example/a");
    };
    QString asked;
    for (int i = 1; i < 9; i += 2) {
        watch(channel(i));
        asked += askedIn(20s) + u' ';
    }
    EXPECT_EQ(asked, u"c2 c0 c4 c6 c8 "_s) << "what has failed is not tried again";
    for (int i : {1, 8, 2}) {
        watch(channel(i));
        asked = askedIn(20s);
    }
    EXPECT_EQ(asked, u""_s);
    EXPECT_EQ(std::ranges::count_if(processes.requests,
                                    [](const ProcessRequest& request) {
                                        return request.arguments.contains(u"--rm-cache-dir"_s);
                                    }),
              0)
        << "failures ahead count nowhere";
}

TEST_F(ChannelPreparationTest, EndsWithEverythingThatTheUserAsksForAndWhenSaving) {
    processes.answer = [](const auto&) { return test::printed("https://cdn.example/a"); };
    watch(channel(1));
    processes.answer = [](const auto&) { return std::nullopt; };
    EXPECT_EQ(askedIn(6s), u"c2"_s);
    EXPECT_EQ(processes.openCount(), 1);
    state.setTransport(Transport::paused);
    settle();
    EXPECT_EQ(processes.openCount(), 0) << "a pause ends yt-dlp";
    EXPECT_EQ(askedIn(1min), u""_s);

    state.setTransport(Transport::playing);
    preparation.setSaving(true);
    EXPECT_EQ(askedIn(1min), u""_s);
    preparation.setSaving(false);
    preferences.setPreparesNextChannels(false);
    notifications.post(AppNotification::preparesNextChannelsChanged, false);
    EXPECT_EQ(askedIn(1min), u""_s);
    preferences.setPreparesNextChannels(true);
    notifications.post(AppNotification::preparesNextChannelsChanged, true);
    EXPECT_EQ(askedIn(6s), u"c2"_s) << "it begins where it was ended";
    state.setError(channel(1), u"Stream ended"_s);
    settle();
    EXPECT_EQ(processes.openCount(), 0);
}

} // namespace

} // namespace orvane
