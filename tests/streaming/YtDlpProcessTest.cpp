// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/TaskScope.h"
#include "model/BuiltInChannels.h"
#include "platform/system/Process.h"
#include "streaming/StreamResolver.h"
#include "support/FakeClock.h"
#include "support/FakeMachine.h"

#include <QCoroTask>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Real child processes on a machine of the test's own.
class YtDlpProcessTest : public testing::Test {
protected:
    [[nodiscard]] StreamResolver::Result resolve() {
        return QCoro::waitFor(resolver.resolve(channel, Resolution::r720, {}));
    }

    test::FakeMachine machine;
    LocalProcessRunner processes;
    test::FakeClock clock;
    TaskScope tasks;
    StreamResolver resolver{Origin::parse(u"https://site.example"_s), machine.host(), processes,
                            clock, tasks};
    const Channel channel = builtInChannels().first();
    const QString query = u"[-f] [best[height<=720]] [-g] [--no-playlist] [--extractor-args] "
                          u"[youtube:player_client=android,ios] [--no-check-certificate] "
                          u"[https://site.example/@AlArabiya/live]"_s;
    const QByteArray address = "echo https://cdn.example/live.m3u8\n";
};

TEST_F(YtDlpProcessTest, AsksAnExecutable) {
    machine.install(u"/usr/bin/yt-dlp"_s, address);
    EXPECT_EQ(resolve(), QUrl(u"https://cdn.example/live.m3u8"_s));
    EXPECT_EQ(machine.calls(), QStringList{u"/usr/bin/yt-dlp "_s + query});
}

TEST_F(YtDlpProcessTest, AsksThePythonModule) {
    machine.install(u"/usr/bin/which"_s, "exit 1\n");
    machine.install(u"/usr/bin/python3"_s,
                    R"(case "$*" in *--version) ;; *) )" + address + ";; esac\n");
    EXPECT_EQ(resolve(), QUrl(u"https://cdn.example/live.m3u8"_s));
    EXPECT_EQ(machine.calls(), (QStringList{u"/usr/bin/which [yt-dlp]"_s,
                                            u"/usr/bin/python3 [-m] [yt_dlp] [--version]"_s,
                                            u"/usr/bin/python3 [-m] [yt_dlp] "_s + query}));
}

TEST_F(YtDlpProcessTest, ProbesThePlacesInOrder) {
    const QStringList places{u"/opt/homebrew/bin/yt-dlp"_s, u"/usr/local/bin/yt-dlp"_s,
                             u"/usr/bin/yt-dlp"_s, u"/home/Library/Python/3.9/bin/yt-dlp"_s,
                             u"/home/Library/Python/3.13/bin/yt-dlp"_s};
    for (const QString& place : places)
        machine.install(place, address);
    QStringList found;
    for (const QString& place : places) {
        StreamResolver fresh(Origin::parse(u"https://site.example"_s), machine.host(), processes,
                             clock, tasks);
        EXPECT_TRUE(QCoro::waitFor(fresh.resolve(channel, Resolution::r480, {})));
        found += machine.calls().last().section(u' ', 0, 0);
        machine.remove(place);
    }
    EXPECT_EQ(found, places);
}

TEST_F(YtDlpProcessTest, TakesWhatWhichFindsAndTrustsItAfterwards) {
    machine.install(u"/elsewhere/yt-dlp"_s, address);
    machine.install(u"/usr/bin/which"_s, "echo \"$root/elsewhere/yt-dlp\"\n");
    EXPECT_TRUE(resolve());
    for (int again = 0; again < 2; ++again) {
        resolver.invalidateAllCache();
        EXPECT_TRUE(resolve());
    }
    EXPECT_EQ(machine.calls().size(), 4);
    EXPECT_EQ(machine.calls().first(), u"/usr/bin/which [yt-dlp]"_s);
    EXPECT_EQ(machine.calls().last(), u"/elsewhere/yt-dlp "_s + query);
}

TEST_F(YtDlpProcessTest, InstallsWhatIsMissing) {
    machine.install(u"/usr/bin/which"_s, "exit 1\n");
    machine.install(u"/usr/bin/python3"_s, "exit 1\n");
    machine.install(u"/opt/homebrew/bin/brew"_s, "printf '#!/bin/sh\\n" + address.trimmed() +
                                                     R"(\n' > "$root/usr/bin/yt-dlp")"
                                                     "\nchmod +x \"$root/usr/bin/yt-dlp\"\n");
    EXPECT_TRUE(resolve());
    EXPECT_EQ(machine.calls(),
              (QStringList{
                  u"/usr/bin/which [yt-dlp]"_s,
                  u"/usr/bin/python3 [-m] [yt_dlp] [--version]"_s,
                  u"/usr/bin/python3 [-m] [pip] [install] [--user] [--quiet] [yt-dlp]"_s,
                  u"/opt/homebrew/bin/brew [install] [yt-dlp]"_s,
              }));
}

TEST_F(YtDlpProcessTest, SaysThatItIsMissingWhereNothingHelps) {
    const StreamResolver::Result result = resolve();
    ASSERT_FALSE(result);
    EXPECT_EQ(errorDescription(result.error()),
              u"Stream resolve failed: yt-dlp not found and auto-install failed"_s);
}

} // namespace
} // namespace orvane
