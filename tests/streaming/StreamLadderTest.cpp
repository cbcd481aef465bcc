// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/ladder/StreamLadder.h"

#include "base/TaskScope.h"
#include "platform/system/HttpClient.h"
#include "streaming/StreamResolver.h"
#include "streaming/tool/YtDlpTool.h"
#include "support/EventLoop.h"
#include "support/FakeClock.h"
#include "support/FakeMachine.h"
#include "support/FakeProcessRunner.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using test::printed;

namespace {

/// A machine with an old yt-dlp where the user's tools are, and a newer one in their own folder.
class StreamLadderTest : public testing::Test {
protected:
    StreamLadderTest() {
        machine.install(u"/usr/bin/yt-dlp"_s);
        machine.install(u"/home/.local/bin/yt-dlp"_s);
        processes.answer = [this](const ProcessRequest& request) { return answerTo(request); };
    }

    /// Each call for a stream is recorded as "old" or "new", with "+" if the tool chooses the
    /// clients, and with "js" if it may use a JavaScript runtime.
    std::optional<ProcessOutcome> answerTo(const ProcessRequest& request) {
        const bool isNew = request.program.contains(u"/home/");
        const QStringList& arguments = request.arguments;
        if (request.program.endsWith(u"which") || request.program.endsWith(u"python3"))
            return printed({}, {}, 1);
        if (arguments == QStringList{u"--version"_s})
            return printed(isNew ? newVersion : "2023.03.04\n");
        if (arguments == QStringList{u"--help"_s})
            return printed(isNew ? "  --js-runtimes RUNTIME[:PATH]" : "");
        if (arguments == QStringList{u"--rm-cache-dir"_s})
            return printed({});
        QString call = isNew ? u"new"_s : u"old"_s;
        if (!arguments.contains(u"--extractor-args"_s))
            call += u'+';
        if (arguments.contains(u"--js-runtimes"_s))
            call += u"js"_s;
        calls += call;
        return answers.value(call, tooOld());
    }
    [[nodiscard]] static ProcessOutcome tooOld() {
        return printed({}, "ERROR: [site] abc: This app version is no longer supported", 1);
    }
    [[nodiscard]] StreamResolver::Result resolve() {
        resolver->invalidateAllCache();
        return QCoro::waitFor(resolver->resolve(channel, Resolution::r480, {}));
    }
    [[nodiscard]] QStringList takeCalls() { return std::exchange(calls, {}); }
    /// Starts the program anew.
    void restart() {
        EXPECT_TRUE(test::runUntil([&] { return tasks.count() == 0; }));
        resolver.reset();
        ladder.reset();
        tool.reset();
        start();
    }
    void start() {
        tool.emplace(machine.host(), processes, clock, http, YtDlpSources{});
        ladder.emplace(folder.filePath(u"cache/ladder.json"_s), clock);
        resolver.emplace(Origin::parse(u"https://site.example"_s), *tool, *ladder, clock, tasks);
    }

    QTemporaryDir folder;
    test::FakeMachine machine;
    test::FakeProcessRunner processes;
    test::FakeClock clock;
    TaskScope tasks;
    HttpClient http{u"test"_s};
    std::optional<YtDlpTool> tool;
    std::optional<StreamLadder> ladder;
    std::optional<StreamResolver> resolver;
    QByteArray newVersion = "2026.10.26\n";
    QHash<QString, ProcessOutcome> answers;
    QStringList calls;
    const Channel channel = Channel::custom(u"Mine"_s, u"Mine"_s);
};

TEST_F(StreamLadderTest, ClimbsAtOnceWhenTheSiteHasOutgrownTheCall) {
    start();
    answers = {{u"new"_s, printed("https://cdn.example/a")}};
    EXPECT_TRUE(resolve());
    EXPECT_EQ(takeCalls(), (QStringList{u"old"_s, u"new"_s}));

    answers = {{u"new+"_s, printed("https://cdn.example/v\nhttps://cdn.example/s\n")}};
    const StreamResolver::Result apart = resolve();
    ASSERT_TRUE(apart);
    EXPECT_EQ(apart->picture, QUrl(u"https://cdn.example/v"_s));
    EXPECT_EQ(apart->sound, QUrl(u"https://cdn.example/s"_s));
    EXPECT_EQ(takeCalls(), (QStringList{u"old"_s, u"new"_s, u"new+"_s}));

    machine.install(u"/usr/bin/node"_s);
    answers = {{u"new+js"_s, printed("https://cdn.example/a")}};
    EXPECT_TRUE(resolve());
    EXPECT_EQ(takeCalls(), (QStringList{u"old"_s, u"new"_s, u"new+"_s, u"new+js"_s}));
    EXPECT_TRUE(clock.sleeps.empty()) << "no pause on the way";

    // Where all are too old, the rest of the rounds repeats the last one only.
    answers.clear();
    EXPECT_FALSE(resolve());
    EXPECT_EQ(takeCalls().size(), 4 + 2);
}

TEST_F(StreamLadderTest, LeavesOtherFailuresAlone) {
    start();
    for (const char* text : {"ERROR: [site] abc: This live event will begin in 2 hours",
                             "ERROR: Sign in to confirm you're not a bot",
                             "WARNING: no longer supported\nERROR: [site] abc: Private video",
                             "ERROR: something else"}) {
        answers = {{u"old"_s, printed({}, text, 1)}};
        EXPECT_FALSE(resolve());
        EXPECT_EQ(takeCalls(), (QStringList{u"old"_s, u"old"_s, u"old"_s})) << text;
    }
}

TEST_F(StreamLadderTest, RemembersTheRungThatPlayedForThisVersion) {
    start();
    answers = {{u"new+"_s, printed("https://cdn.example/a")}};
    EXPECT_TRUE(resolve());
    EXPECT_EQ(takeCalls().size(), 3);
    EXPECT_TRUE(resolve());
    EXPECT_EQ(takeCalls().size(), 3) << "an address alone is no proof";
    resolver->played(channel);
    restart();
    EXPECT_TRUE(resolve());
    EXPECT_EQ(takeCalls(), QStringList{u"new+"_s});

    newVersion = "2026.12.01\n";
    restart();
    EXPECT_TRUE(resolve());
    EXPECT_EQ(takeCalls(), QStringList{u"new+"_s}) << "the version is asked for afterwards";
    resolver->played(channel);
    EXPECT_TRUE(test::runUntil([&] { return tasks.count() == 0; }));
    answers = {{u"old"_s, printed("https://cdn.example/a")}};
    EXPECT_TRUE(resolve());
    EXPECT_EQ(takeCalls(), QStringList{u"old"_s});
    resolver->played(channel);
    restart();
    EXPECT_TRUE(resolve());
    EXPECT_EQ(takeCalls(), QStringList{u"old"_s});
}

TEST_F(StreamLadderTest, ClimbsWhenAnAddressIsRefusedTwiceWithinAMinute) {
    start();
    answers = {{u"old"_s, printed("https://cdn.example/a")},
               {u"new"_s, printed("https://cdn.example/b")},
               {u"new+"_s, printed("https://cdn.example/c")}};
    const auto refusedAfter = [&](std::chrono::seconds time) {
        EXPECT_TRUE(resolve());
        clock.advance(time);
        resolver->refused(channel);
    };
    refusedAfter(1s);
    refusedAfter(61s);
    refusedAfter(30s);
    EXPECT_EQ(takeCalls(), (QStringList{u"old"_s, u"old"_s, u"old"_s}));
    refusedAfter(1s);
    refusedAfter(1s);
    EXPECT_EQ(takeCalls(), (QStringList{u"new"_s, u"new"_s}));
    EXPECT_TRUE(resolve());
    EXPECT_EQ(takeCalls(), QStringList{u"new+"_s});
    // Of this channel only.
    EXPECT_TRUE(QCoro::waitFor(
        resolver->resolve(Channel::custom(u"Other"_s, u"Other"_s), Resolution::r480, {})));
    EXPECT_EQ(takeCalls(), QStringList{u"old"_s});
}

TEST(LadderMemoryTest, TrustsNoOtherFile) {
    const LadderMemory::Entry entry{.rung = Rung::defaultClients,
                                    .command = {YtDlpCommand::Kind::executable, u"/a/yt-dlp"_s},
                                    .version = u"2026.10.26"_s};
    EXPECT_EQ(LadderMemory::fromJson(LadderMemory::toJson(entry)), entry);
    for (const char* json :
         {"", "[]", R"({"rung":2})", R"({"rung":9,"program":"/a","version":"1"})",
          R"({"rung":2,"program":"a","version":"1"})",
          R"({"rung":0,"program":"/a","version":"1"})"})
        EXPECT_FALSE(LadderMemory::fromJson(json)) << json;
}

} // namespace
} // namespace orvane
