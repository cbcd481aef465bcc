// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/TaskScope.h"
#include "model/BuiltInChannels.h"
#include "platform/system/HttpClient.h"
#include "streaming/StreamResolver.h"
#include "streaming/tool/YtDlpManager.h"
#include "streaming/tool/YtDlpUpdater.h"
#include "support/EventLoop.h"
#include "support/FakeClock.h"
#include "support/FakeMachine.h"
#include "support/FakeProcessRunner.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane {

using namespace Qt::StringLiterals;
using test::printed;

namespace {

/// The first start on a machine with Python and pip, where nothing finds yt-dlp. An installation
/// stays open until the test ends it.
class YtDlpInstallationTest : public testing::Test {
protected:
    YtDlpInstallationTest() {
        machine.install(u"/usr/bin/python3"_s);
        machine.install(u"/usr/bin/pip3"_s);
        processes.answer = [](const ProcessRequest& request) -> std::optional<ProcessOutcome> {
            if (request.arguments.contains(u"install"_s))
                return std::nullopt;
            if (request.arguments.contains(u"-g"_s) && request.program.endsWith(u"/yt-dlp"_s))
                return printed("https://cdn.example/live");
            return printed({}, {}, 1);
        };
    }

    QCoro::Task<> ensure() { ensured = co_await manager.ensureInstalled(); }
    QCoro::Task<> resolve() {
        resolved = co_await resolver.resolve(builtInChannels().first(), Resolution::r480, {});
    }
    QCoro::Task<> install(YtDlpPlan plan, std::optional<YtDlpTool::Installed>* result) {
        *result = co_await tool.install(plan);
    }
    /// Ends the running installation, which has put yt-dlp at `place`, and waits for all callers.
    void installAt(const QString& place) {
        machine.install(place);
        processes.finishOldest(printed({}));
        ASSERT_TRUE(test::runUntil([this] { return tasks.count() == 0; }));
    }
    /// Expects that both callers have got the executable at `place` from one installation.
    void expectShared(const QString& place) const {
        EXPECT_EQ(installations(), 1);
        ASSERT_TRUE(ensured && *ensured);
        EXPECT_EQ((*ensured)->program, machine.real(place));
        ASSERT_TRUE(resolved && *resolved);
        EXPECT_EQ(processes.requests.last().program, machine.real(place));
    }
    [[nodiscard]] qsizetype installations() const {
        return std::ranges::count_if(processes.requests, [](const ProcessRequest& request) {
            return request.arguments.contains(u"install"_s);
        });
    }

    test::FakeMachine machine;
    test::FakeProcessRunner processes;
    test::FakeClock clock;
    TaskScope tasks;
    HttpClient http{u"test"_s};
    YtDlpTool tool{machine.host(), processes, clock, http, {}};
    YtDlpUpdater updater{tool, [] { return std::nullopt; }, tasks};
    YtDlpManager manager{tool, updater, tasks};
    StreamLadder ladder{{}, clock};
    StreamResolver resolver{Origin::parse(u"https://site.example"_s), tool, ladder, clock, tasks};
    std::optional<YtDlpTool::Installed> ensured;
    std::optional<StreamResolver::Result> resolved;
};

// Each place is one in which only the component that installs searches.

TEST_F(YtDlpInstallationTest, OfTheManagerServesTheResolverToo) {
    tasks.spawn(ensure());
    tasks.spawn(resolve());
    EXPECT_EQ(processes.openCount(), 1);
    EXPECT_FALSE(resolved);
    installAt(u"/home/.local/bin/yt-dlp"_s);
    expectShared(u"/home/.local/bin/yt-dlp"_s);
}

TEST_F(YtDlpInstallationTest, OfTheResolverServesTheManagerToo) {
    tasks.spawn(resolve());
    tasks.spawn(ensure());
    EXPECT_EQ(processes.openCount(), 1);
    EXPECT_FALSE(ensured);
    installAt(u"/usr/bin/yt-dlp"_s);
    expectShared(u"/usr/bin/yt-dlp"_s);
}

TEST_F(YtDlpInstallationTest, ServesLaterCallersToo) {
    tasks.spawn(ensure());
    installAt(u"/home/.local/bin/yt-dlp"_s);
    tasks.spawn(resolve());
    ASSERT_TRUE(test::runUntil([this] { return tasks.count() == 0; }));
    expectShared(u"/home/.local/bin/yt-dlp"_s);
}

TEST_F(YtDlpInstallationTest, IsFollowedByAnotherPlanOnlyAfterAFailure) {
    std::optional<YtDlpTool::Installed> first;
    std::optional<YtDlpTool::Installed> second;
    tasks.spawn(install(YtDlpPlan::ofStreamResolver(), &first));
    tasks.spawn(install(YtDlpPlan::ofStreamResolver(), &second));
    tasks.spawn(ensure());
    EXPECT_EQ(processes.openCount(), 1);
    processes.finishOldest(printed({}, {}, 1));
    ASSERT_TRUE(test::runUntil([&] { return first && second && processes.openCount() == 1; }));
    EXPECT_FALSE(*first);
    EXPECT_FALSE(*second) << "shares the failure of its own plan";
    EXPECT_FALSE(ensured);
    EXPECT_TRUE(processes.requests.last().program.endsWith(u"/usr/bin/pip3"_s));
    installAt(u"/usr/local/bin/yt-dlp"_s);
    EXPECT_TRUE(ensured && *ensured);
    EXPECT_EQ(installations(), 2);
}

} // namespace
} // namespace orvane
