// SPDX-License-Identifier: GPL-3.0-or-later
#include "playback/PlayerManager.h"

#include "base/TaskScope.h"
#include "model/BuiltInChannels.h"
#include "platform/system/HttpClient.h"
#include "settings/Preferences.h"
#include "settings/UserDefaults.h"
#include "state/AppNotification.h"
#include "state/AppState.h"
#include "streaming/StreamResolver.h"
#include "streaming/tool/YtDlpTool.h"
#include "support/EventLoop.h"
#include "support/FakeClock.h"
#include "support/FakeMachine.h"
#include "support/FakeProcessRunner.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;
using test::printed;
using test::settle;

namespace {

class FakePlayer final : public MediaPlayer {
public:
    FakePlayer(QString name, QStringList& log) : m_name(std::move(name)), m_log(log) {}
    ~FakePlayer() override {
        Q_EMIT closing();
        note(u"gone"_s);
    }

    [[nodiscard]] Status status() const override { return m_status; }
    [[nodiscard]] std::optional<QString> error() const override { return m_error; }
    [[nodiscard]] TimeControlStatus timeControlStatus() const override { return time; }
    void play() override { note(u"play"_s); }
    void pause() override { note(u"pause"_s); }
    void setMuted(bool muted) override { note(muted ? u"muted"_s : u"unmuted"_s); }
    void setVolume(float volume) override { note(u"volume %1"_s.arg(qreal(volume))); }

    void setBufferLength(std::chrono::minutes length) override { kept = length; }
    [[nodiscard]] LivePosition livePosition() const override { return position; }
    void goBack(std::chrono::milliseconds distance) override {
        note(u"back %1"_s.arg(distance.count()));
    }
    void goLive() override { note(u"live"_s); }
    void setPicture(Picture wanted) override { picture = wanted; }

    void become(Status status, std::optional<QString> error = std::nullopt) {
        m_status = status;
        m_error = std::move(error);
        Q_EMIT statusChanged();
    }

    TimeControlStatus time = TimeControlStatus::waiting;
    LivePosition position;
    std::chrono::minutes kept{};
    Picture picture = Picture::shown;

private:
    void note(const QString& what) { m_log += m_name + u": "_s + what; }

    QString m_name;
    QStringList& m_log;
    Status m_status = Status::unknown;
    std::optional<QString> m_error;
};

class FakePlayerFactory final : public MediaPlayerFactory {
public:
    explicit FakePlayerFactory(QStringList& log) : m_log(log) {}

    [[nodiscard]] QCoro::Task<std::unique_ptr<MediaPlayer>>
    make(StreamAddress address, std::unique_ptr<Standby>, std::stop_token) override {
        auto player = std::make_unique<FakePlayer>(address.picture.fileName(), m_log);
        last = player.get();
        co_return player;
    }

    FakePlayer* last = nullptr;

private:
    QStringList& m_log;
};

class FakeView final : public VideoSurface {
public:
    void setPlayer(MediaPlayer* player) override { shown = player; }

    MediaPlayer* shown = nullptr;
};

class PlayerManagerTest : public testing::Test {
protected:
    PlayerManagerTest() {
        machine.install(u"/usr/bin/yt-dlp"_s);
        using namespace AppNotification;
        const auto note = [this](auto topic, const QString& word) {
            tokens.push_back(notifications.addObserver(topic, [this, word] { log += word; }));
        };
        note(streamLoading, u"streamLoading"_s);
        note(channelChanged, u"channelChanged"_s);
        note(streamResolved, u"streamResolved"_s);
        tokens.push_back(notifications.addObserver(
            streamError, [this](const QString& message) { log += u"streamError "_s + message; }));
        player.setPlayerView(&view);
    }
    ~PlayerManagerTest() override {
        player.stop();
        EXPECT_TRUE(test::runUntil([this] { return tasks.count() == 0; }));
    }

    /// Resolves each channel to an address that ends in its handle.
    static std::optional<ProcessOutcome> byHandle(const ProcessRequest& request) {
        const QString handle = request.arguments.last().section(u'@', 1).section(u'/', 0, 0);
        return printed("https://cdn.example/" + handle.toUtf8());
    }
    [[nodiscard]] QStringList takeLog() { return std::exchange(log, {}); }
    [[nodiscard]] QString error() const {
        const auto* error = std::get_if<PlaybackState::Error>(&state.playbackState());
        return error != nullptr ? error->message : u"no error"_s;
    }

    QStringList log;
    test::FakeMachine machine;
    UserDefaults defaults{machine.real(u"/preferences.json"_s)};
    Preferences preferences{defaults};
    NotificationCenter notifications;
    ChannelRegistry registry{preferences};
    AppState state{preferences, notifications};
    TaskScope tasks;
    test::FakeClock clock;
    test::FakeProcessRunner processes;
    HttpClient http{u"test"_s};
    YtDlpTool tool{machine.host(), processes, clock, http, {}};
    StreamLadder ladder{{}, clock};
    StreamResolver resolver{Origin::parse(u"https://site.example"_s), tool, ladder, clock, tasks};
    FakePlayerFactory factory{log};
    FakeView view;
    PlayerManager player{state, registry, resolver, factory, clock, tasks};
    std::vector<NotificationCenter::Token> tokens;
    const Channel first = Channel::custom(u"a"_s, u"A"_s);
    const Channel second = Channel::custom(u"b"_s, u"B"_s);
};

TEST_F(PlayerManagerTest, OpensAChannelStepByStep) {
    processes.answer = byHandle;
    state.setMuted(true);
    state.setVolume(0.5F);
    player.play(first);
    settle();
    EXPECT_EQ(takeLog(), (QStringList{u"streamLoading"_s, u"channelChanged"_s, u"a: muted"_s,
                                      u"a: volume 0.5"_s, u"a: play"_s}));
    EXPECT_EQ(view.shown, factory.last);
    EXPECT_EQ(preferences.lastChannelID(), first.id());
    factory.last->become(MediaPlayer::Status::readyToPlay);
    EXPECT_TRUE(takeLog().isEmpty()) << "not during the player's own signal";
    settle();
    EXPECT_EQ(takeLog(), QStringList{u"streamResolved"_s});

    player.play(second);
    settle();
    EXPECT_EQ(takeLog(),
              (QStringList{u"streamLoading"_s, u"channelChanged"_s, u"a: pause"_s, u"b: muted"_s,
                           u"b: volume 0.5"_s, u"a: gone"_s, u"b: play"_s}));
}

TEST_F(PlayerManagerTest, BeginsEveryStreamAtLive) {
    using namespace std::chrono_literals;
    processes.answer = byHandle;
    preferences.setBufferLength(15min);
    player.setSoundOnly(true);
    player.play(first);
    settle();
    EXPECT_EQ(factory.last->kept, 15min);
    EXPECT_EQ(factory.last->picture, MediaPlayer::Picture::off);
    player.goBack(10s);
    factory.last->become(MediaPlayer::Status::readyToPlay);
    settle();
    log.clear();
    const LivePosition behind{.behind = 40s, .canGoBack = true};
    const auto fallBehind = [&] {
        factory.last->position = {.behind = behind.behind, .canGoBack = behind.canGoBack};
        Q_EMIT factory.last->livePositionChanged();
        EXPECT_EQ(state.livePosition(), behind);
    };
    fallBehind();
    player.goBack(10s);
    player.pause();
    player.goLive();
    EXPECT_EQ(takeLog(),
              (QStringList{u"a: back 10000"_s, u"a: pause"_s, u"a: live"_s, u"a: play"_s}))
        << "nothing before there is a picture, and no standstill at live";

    player.play(second);
    EXPECT_EQ(state.livePosition(), LivePosition{}) << "as soon as it is asked for";
    settle();
    factory.last->become(MediaPlayer::Status::readyToPlay);
    settle();
    fallBehind();
    factory.last->become(MediaPlayer::Status::failed, u"Stream stalled"_s);
    settle();
    EXPECT_EQ(state.livePosition(), LivePosition{}) << "after a failure";
}

TEST_F(PlayerManagerTest, PlaysOnlyTheLastOfTwoChannelsOpenedInQuickSuccession) {
    player.play(first);
    ASSERT_TRUE(test::runUntil([&] { return processes.openCount() == 1; }));
    player.play(second);
    ASSERT_TRUE(test::runUntil([&] { return tasks.count() == 1; })) << "the first is cancelled";
    processes.finishOldest(printed("https://cdn.example/b"));
    ASSERT_TRUE(test::runUntil([&] { return factory.last != nullptr; }));
    settle();
    EXPECT_FALSE(takeLog().filter(u"a:"_s).size());
    EXPECT_EQ(error(), u"no error"_s);
}

TEST_F(PlayerManagerTest, OpensOnlyTheFirstAndTheLastChannelOfABurst) {
    test::FakeClock slow(test::FakeClock::Sleep::waitsForTest);
    PlayerManager bursts{state, registry, resolver, factory, slow, tasks};
    for (int i = 0; i < 100; ++i) {
        bursts.play(i % 2 == 0 ? first : second);
        settle();
        if (i % 10 == 9)
            bursts.stop();
    }
    bursts.play(second);
    settle();
    EXPECT_EQ(processes.requests.size(), 1);
    slow.advance(std::chrono::milliseconds(200));
    settle();
    ASSERT_EQ(processes.requests.size(), 2);
    EXPECT_TRUE(processes.requests.last().arguments.last().contains(u"/@b/"));
    bursts.stop();
    slow.advance({});
}

TEST_F(PlayerManagerTest, ShowsWhyAChannelCannotBeResolvedUnlessCancelled) {
    processes.answer = [](const auto&) { return printed({}, "offline", 1); };
    player.play(first);
    settle();
    EXPECT_EQ(error(), u"Stream resolve failed: offline"_s);
    EXPECT_EQ(state.currentChannel(), first);

    processes.answer = [](const auto&) { return std::nullopt; };
    player.play(first);
    ASSERT_TRUE(test::runUntil([&] { return processes.openCount() == 1; }));
    player.stop();
    ASSERT_TRUE(test::runUntil([&] { return tasks.count() == 0; }));
    EXPECT_TRUE(std::holds_alternative<PlaybackState::Loading>(state.playbackState()));
}

TEST_F(PlayerManagerTest, RetriesARefusedAddressWithoutLimit) {
    processes.answer = byHandle;
    player.play(first);
    settle();
    for (const QString& text : {u"HTTP error 403 Forbidden"_s, u"Access FORBIDDEN"_s,
                                u"You have no Permission"_s, u"403"_s, u"403"_s}) {
        factory.last->become(MediaPlayer::Status::failed, text);
        settle();
        EXPECT_EQ(error(), u"no error"_s);
    }
    const auto resolutions = std::ranges::count_if(processes.requests, [](const auto& request) {
        return request.arguments.contains(u"-g"_s);
    });
    EXPECT_EQ(resolutions, 6) << "each time with a fresh address";
    EXPECT_EQ(log.count(u"streamLoading"_s), 6);
    EXPECT_FALSE(log.contains(u"streamResolved"_s));
    EXPECT_TRUE(clock.sleeps.empty()) << "nor a delay";
}

TEST_F(PlayerManagerTest, ShowsEveryOtherFailureAndCanRetry) {
    processes.answer = byHandle;
    player.play(first);
    settle();
    factory.last->become(MediaPlayer::Status::readyToPlay);
    settle();
    factory.last->become(MediaPlayer::Status::failed, u"Stream ended"_s);
    settle();
    EXPECT_EQ(error(), u"Stream ended"_s);
    player.play(first);
    settle();
    EXPECT_EQ(processes.requests.size(), 1) << "the cached address is still valid";
    factory.last->become(MediaPlayer::Status::failed);
    settle();
    EXPECT_EQ(error(), u"Playback failed"_s);
    player.retryCurrent();
    settle();
    EXPECT_EQ(processes.requests.size(), 2);

    // The former channel is silent under the error of the next one, whatever the user presses.
    processes.answer = [](const auto&) { return printed({}, "offline", 1); };
    player.play(second);
    settle();
    ASSERT_EQ(error(), u"Stream resolve failed: offline"_s);
    EXPECT_EQ(takeLog().filter(u"a:"_s).last(), u"a: pause"_s);
    player.togglePlayPause();
    player.togglePlayPause();
    EXPECT_EQ(state.transport(), Transport::playing);
    EXPECT_EQ(takeLog(), QStringList{u"a: pause"_s});
}

TEST_F(PlayerManagerTest, GoesOnWithAnotherPlayerWhenTheSoundIsLost) {
    processes.answer = byHandle;
    player.play(first);
    settle();
    factory.last->become(MediaPlayer::Status::readyToPlay);
    settle();
    log.clear();
    Q_EMIT factory.last->soundLost();
    settle();
    EXPECT_EQ(view.shown, factory.last);
    EXPECT_EQ(takeLog(), (QStringList{u"a: pause"_s, u"a: unmuted"_s, u"a: volume 1"_s,
                                      u"a: gone"_s, u"a: play"_s}))
        << "nothing is announced";
    EXPECT_EQ(processes.requests.size(), 1);
}

TEST_F(PlayerManagerTest, IgnoresTheFailureOfAFormerChannel) {
    processes.answer = byHandle;
    player.play(first);
    settle();
    FakePlayer* old = factory.last;
    processes.answer = [](const auto&) { return std::nullopt; };
    old->become(MediaPlayer::Status::failed, u"403"_s);
    player.play(second);
    settle();
    EXPECT_EQ(state.currentChannel(), second);
    EXPECT_EQ(processes.requests.size(), 2);
}

TEST_F(PlayerManagerTest, ClampsAndStoresTheVolumeWithAndWithoutAPlayer) {
    player.setVolume(1.7F);
    EXPECT_EQ(preferences.volume(), 1.0F);
    player.setVolume(0.2F);
    player.adjustVolume(-0.3F);
    EXPECT_EQ(state.volume(), 0.0F);
    player.toggleMute();
    EXPECT_TRUE(preferences.isMuted());
    player.pause();
    player.resume();
    player.togglePlayPause();

    processes.answer = byHandle;
    player.play(first);
    settle();
    log.clear();
    player.setMute(false);
    player.adjustVolume(0.25F);
    factory.last->time = MediaPlayer::TimeControlStatus::playing;
    player.togglePlayPause();
    EXPECT_EQ(state.transport(), Transport::paused);
    factory.last->time = MediaPlayer::TimeControlStatus::waiting;
    player.togglePlayPause();
    EXPECT_EQ(state.transport(), Transport::playing);
    EXPECT_EQ(takeLog(),
              (QStringList{u"a: unmuted"_s, u"a: volume 0.25"_s, u"a: pause"_s, u"a: play"_s}));

    player.stop();
    player.resume();
    EXPECT_EQ(state.transport(), Transport::stopped);
    EXPECT_EQ(takeLog(), (QStringList{u"a: pause"_s, u"a: gone"_s}));
    EXPECT_EQ(view.shown, nullptr);
    EXPECT_EQ(state.currentChannel(), first);
}

} // namespace
} // namespace orvane
