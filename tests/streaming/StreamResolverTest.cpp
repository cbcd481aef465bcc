// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/StreamResolver.h"

#include "base/TaskScope.h"
#include "model/BuiltInChannels.h"
#include "platform/system/HttpClient.h"
#include "streaming/tool/YtDlpTool.h"
#include "support/EventLoop.h"
#include "support/FakeClock.h"
#include "support/FakeMachine.h"
#include "support/FakeProcessRunner.h"

#include <QCoroTask>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::printed;

namespace {

class StreamResolverTest : public testing::Test {
protected:
    StreamResolverTest() { machine.install(u"/usr/bin/yt-dlp"_s); }

    [[nodiscard]] StreamResolver::Result resolve(const Channel& channel,
                                                 Resolution resolution = Resolution::r480) {
        return QCoro::waitFor(resolver.resolve(channel, resolution, {}));
    }
    [[nodiscard]] QString failure(const Channel& channel) {
        const StreamResolver::Result result = resolve(channel);
        return result ? u"no failure"_s : errorDescription(result.error());
    }
    /// Returns the last argument of each call: the page, or another order to yt-dlp.
    [[nodiscard]] QStringList lastArguments() const {
        QStringList list;
        for (const ProcessRequest& request : processes.requests)
            list += request.arguments.last();
        return list;
    }

    test::FakeMachine machine;
    test::FakeProcessRunner processes;
    test::FakeClock clock;
    TaskScope tasks;
    HttpClient http{u"test"_s};
    YtDlpTool tool{machine.host(), processes, clock, http, {}};
    StreamLadder ladder{{}, clock};
    StreamResolver resolver{Origin::parse(u"https://site.example"_s), tool, ladder, clock, tasks};
    const Channel builtIn = builtInChannels().first();
    const Channel custom = Channel::custom(u"Mine"_s, u"Mine"_s);
};

TEST_F(StreamResolverTest, CachesAnAddressFor900Seconds) {
    processes.answer = [](const auto&) { return printed(" https://cdn.example/a.m3u8\n"); };
    EXPECT_EQ(resolve(builtIn), QUrl(u"https://cdn.example/a.m3u8"_s));
    EXPECT_EQ(processes.requests.first().program, machine.real(u"/usr/bin/yt-dlp"_s));
    EXPECT_EQ(
        processes.requests.first().arguments,
        (QStringList{u"-f"_s, u"best[height<=480]"_s, u"-g"_s, u"--no-playlist"_s,
                     u"--extractor-args"_s, u"youtube:player_client=android,ios"_s,
                     u"--no-check-certificate"_s, u"https://site.example/@AlArabiya/live"_s}));
    EXPECT_FALSE(processes.requests.first().environment);
    // Found once, the tool is trusted for the rest of the run.
    machine.remove(u"/usr/bin/yt-dlp"_s);
    clock.advance(899s);
    EXPECT_TRUE(resolve(builtIn));
    EXPECT_EQ(processes.requests.size(), 1);
    EXPECT_TRUE(resolve(builtIn, Resolution::r720));
    EXPECT_EQ(processes.requests.size(), 2);
    clock.advance(1s);
    EXPECT_TRUE(resolve(builtIn));
    EXPECT_EQ(processes.requests.size(), 3);

    clock.advance(-1s);
    EXPECT_TRUE(resolve(builtIn));
    EXPECT_EQ(processes.requests.size(), 4) << "the clock went back";
    processes.requests.removeLast();

    resolver.invalidateCache(custom);
    EXPECT_TRUE(resolve(builtIn));
    EXPECT_EQ(processes.requests.size(), 3);
    resolver.invalidateCache(builtIn);
    EXPECT_TRUE(resolve(builtIn, Resolution::r720));
    EXPECT_EQ(processes.requests.size(), 4);
    resolver.invalidateAllCache();
    EXPECT_TRUE(resolve(builtIn, Resolution::r720));
    EXPECT_EQ(processes.requests.size(), 5);
}

TEST_F(StreamResolverTest, TriesThreeRoundsWithGrowingPauses) {
    processes.answer = [](const auto&) { return printed({}, " no luck \n", 1); };
    EXPECT_EQ(failure(custom), u"Stream resolve failed: no luck"_s);
    const QString mine = u"https://site.example/@Mine/live"_s;
    EXPECT_EQ(lastArguments(), (QStringList{mine, mine, mine}));
    EXPECT_EQ(clock.sleeps, (std::vector{1000ms, 2000ms}));

    processes.requests.clear();
    EXPECT_EQ(failure(builtIn), u"Stream resolve failed: no luck"_s);
    const QString live = u"https://site.example/@AlArabiya/live"_s;
    const QString watch = u"https://site.example/watch?v=n7eQejkXbnM"_s;
    EXPECT_EQ(lastArguments().first(6), (QStringList{live, watch, live, watch, live, watch}));
}

TEST_F(StreamResolverTest, FallsBackToTheVideoInTheSameRound) {
    processes.answer = [](const ProcessRequest& request) {
        return request.arguments.last().contains(u"watch") ? printed("https://cdn.example/v")
                                                           : printed({}, "offline", 1);
    };
    EXPECT_EQ(resolve(builtIn), QUrl(u"https://cdn.example/v"_s));
    EXPECT_EQ(processes.requests.size(), 2);
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST_F(StreamResolverTest, ClearsTheCacheOfYtDlpFromTheSecondFailureInARow) {
    bool works = false;
    processes.answer = [&](const auto&) {
        return works ? printed("https://cdn.example/a") : printed({}, "x", 1);
    };
    const auto clearings = [this] { return lastArguments().count(u"--rm-cache-dir"_s); };
    EXPECT_FALSE(resolve(custom));
    EXPECT_EQ(clearings(), 0);
    EXPECT_FALSE(resolve(custom));
    EXPECT_EQ(clearings(), 1);
    EXPECT_EQ(processes.requests.last().arguments, QStringList{u"--rm-cache-dir"_s});
    EXPECT_FALSE(resolve(custom));
    EXPECT_EQ(clearings(), 2);
    works = true;
    EXPECT_TRUE(resolve(custom));
    works = false;
    resolver.invalidateAllCache();
    EXPECT_FALSE(resolve(custom));
    EXPECT_EQ(clearings(), 2);
}

TEST_F(StreamResolverTest, ReportsWhyThereIsNoAddress) {
    const struct {
        ProcessOutcome outcome;
        QString text;
    } rows[] = {
        {std::unexpected(LaunchFailure{u"no such thing"_s}),
         u"Stream resolve failed: Failed to run yt-dlp: no such thing"_s},
        {printed({}, {}), u"Stream resolve failed: "_s},
        {printed("\xff\xfe", "broken output"), u"Stream resolve failed: broken output"_s},
        {printed("https://a.example/1\nhttps://a.example/2", "two"),
         u"Stream resolve failed: two"_s},
        {printed("https://a.example/with blank", "blank"), u"Stream resolve failed: blank"_s},
        {printed({}, "\xff"), u"Stream resolve failed: Unknown error"_s},
        {printed({}, "خطأ"), u"Stream resolve failed: خطأ"_s},
        {ProcessResult{.end = ProcessResult::End::killed, .standardError = {.bytes = "crashed"}},
         u"Stream resolve failed: crashed"_s},
        {ProcessResult{.standardOutput = {.bytes = "https://a.example/x", .isTruncated = true},
                       .standardError = {.bytes = "endless"}},
         u"Stream resolve failed: endless"_s},
    };
    for (const auto& row : rows) {
        processes.answer = [&](const auto&) { return row.outcome; };
        EXPECT_EQ(failure(custom), row.text);
    }
    // The output counts, not the exit status.
    processes.answer = [](const auto&) { return printed("https://a.example/x", "warning", 1); };
    EXPECT_TRUE(resolve(custom));
}

TEST_F(StreamResolverTest, NamesTheConfigurationThatGetsInTheWay) {
    test::FakeClock slow(test::FakeClock::Sleep::waitsForTest);
    StreamResolver waiting(Origin::parse(u"https://site.example"_s), tool, ladder, slow, tasks);
    std::optional<StreamResolver::Result> result;
    const auto resolveWaiting = [&]() -> QCoro::Task<> {
        result = co_await waiting.resolve(custom, Resolution::r480, {});
    };
    const auto start = [&] {
        result.reset();
        processes.requests.clear();
        tasks.spawn(resolveWaiting());
    };
    const auto configure = [&](const QByteArray& text) {
        QDir().mkpath(machine.real(u"/home/.config/yt-dlp"_s));
        QFile file(machine.real(u"/home/.config/yt-dlp/config"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    };
    const QString words = u"Stream resolve failed: yt-dlp's own configuration gets in the way: "_s +
                          machine.real(u"/home/.config/yt-dlp/config"_s);
    const auto hasResult = [&] {
        slow.advance(1s);
        return result.has_value();
    };

    // It prints more.
    configure("# my own\n--print title\n");
    processes.answer = [](const auto&) { return printed("News\nhttps://a.example/x", "beware"); };
    start();
    ASSERT_TRUE(test::runUntil(hasResult));
    EXPECT_EQ(errorDescription(result->error()), words + u"\nbeware"_s);
    EXPECT_EQ(processes.requests.size(), 3);
    // That is not why this fails.
    processes.answer = [](const auto&) { return printed({}, "no such page"); };
    start();
    ASSERT_TRUE(test::runUntil(hasResult));
    EXPECT_EQ(errorDescription(result->error()), u"Stream resolve failed: no such page"_s);

    // It downloads, and does not end.
    configure("--no-simulate -o '/tmp/a b'");
    const auto clearing = u"--rm-cache-dir"_s;
    processes.answer = [&](const ProcessRequest& request) {
        return request.arguments.last() == clearing ? std::optional(printed({})) : std::nullopt;
    };
    start();
    ASSERT_TRUE(test::runUntil([&] { return processes.openCount() == 1; }));
    slow.advance(89s);
    test::settle();
    EXPECT_FALSE(result);
    slow.advance(1s);
    ASSERT_TRUE(test::runUntil(hasResult));
    EXPECT_EQ(errorDescription(result->error()), words);
    EXPECT_EQ(lastArguments(), (QStringList{u"https://site.example/@Mine/live"_s, clearing}))
        << "the next call would last as long";

    // No other call has a limit.
    configure("--no-check-certificates # --no-simulate");
    start();
    ASSERT_TRUE(test::runUntil([&] { return processes.openCount() == 1; }));
    slow.advance(1h);
    test::settle();
    EXPECT_FALSE(result);
    processes.finishOldest(printed("https://a.example/x"));
    ASSERT_TRUE(test::runUntil(hasResult));
    EXPECT_TRUE(*result);
}

TEST_F(StreamResolverTest, RunsNothingWithoutASite) {
    StreamResolver off(std::nullopt, tool, ladder, clock, tasks);
    EXPECT_FALSE(QCoro::waitFor(off.resolve(builtIn, Resolution::r480, {})));
    EXPECT_TRUE(processes.requests.isEmpty());
}

TEST_F(StreamResolverTest, StopsOneCallAndNotTheOthers) {
    std::stop_source stop;
    std::optional<StreamResolver::Result> stopped;
    std::optional<StreamResolver::Result> other;
    const auto start = [this](std::stop_token token,
                              std::optional<StreamResolver::Result>* result) -> QCoro::Task<> {
        *result = co_await resolver.resolve(custom, Resolution::r480, token);
    };
    tasks.spawn(start(stop.get_token(), &stopped));
    tasks.spawn(start({}, &other));
    ASSERT_TRUE(test::runUntil([&] { return processes.openCount() == 2; }));
    stop.request_stop();
    ASSERT_TRUE(test::runUntil([&] { return stopped.has_value(); }));
    EXPECT_FALSE(other);
    EXPECT_TRUE(clock.sleeps.empty()) << "no further round";
    processes.finishOldest(printed("https://cdn.example/b"));
    ASSERT_TRUE(test::runUntil([&] { return other.has_value(); }));
    EXPECT_EQ(*other, QUrl(u"https://cdn.example/b"_s));

    // A stopped call does not count as a failure.
    processes.answer = [](const auto&) { return printed({}, "x", 1); };
    resolver.invalidateAllCache();
    EXPECT_FALSE(resolve(custom));
    EXPECT_FALSE(lastArguments().contains(u"--rm-cache-dir"_s));
}

TEST_F(StreamResolverTest, UpgradesOnceInARun) {
    processes.answer = [](const auto&) { return printed({}); };
    resolver.updateYtDlpIfNeeded();
    resolver.updateYtDlpIfNeeded();
    ASSERT_EQ(processes.requests.size(), 1);
    EXPECT_EQ(processes.requests.first().program, machine.real(u"/usr/bin/python3"_s));
    EXPECT_EQ(processes.requests.first().arguments.join(u' '),
              u"-m pip install --user --quiet --upgrade yt-dlp"_s);
}

} // namespace
} // namespace orvane
