// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/BuiltInChannels.h"
#include "platform/Process.h"
#include "platform/TaskScope.h"
#include "streaming/StreamResolver.h"
#include "support/FakeClock.h"

#include <QCoroTask>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Real child processes on a machine laid out in a temporary folder. Every stand-in records how it
/// was called: its path below the machine's root and each argument in brackets.
class YtDlpProcessTest : public testing::Test {
protected:
    void install(const QString& path, const QByteArray& script) const {
        const QString file = folder.path() + path;
        QDir().mkpath(QFileInfo(file).path());
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("#!/bin/sh\nroot='" + folder.path().toUtf8() + "'\n");
        out.write(
            R"({ printf '%s' "${0#"$root"}"; for a; do printf ' [%s]' "$a"; done; echo; } >> "$root/log")"
            "\n");
        out.write(script);
        out.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    [[nodiscard]] QStringList calls() const {
        QFile file(folder.filePath(u"log"_s));
        return file.open(QIODevice::ReadOnly)
                   ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                   : QStringList();
    }
    [[nodiscard]] StreamResolver::Result resolve() {
        return QCoro::waitFor(resolver.resolve(channel, Resolution::r720, {}));
    }

    QTemporaryDir folder;
    LocalProcessRunner processes;
    test::FakeClock clock;
    TaskScope tasks;
    StreamResolver resolver{Origin::parse(u"https://site.example"_s),
                            HostFileSystem(folder.path(), folder.filePath(u"home"_s)), processes,
                            clock, tasks};
    const Channel channel = builtInChannels().first();
    const QString query = u"[-f] [best[height<=720]] [-g] [--no-playlist] [--extractor-args] "
                          u"[youtube:player_client=android,ios] [--no-check-certificate] "
                          u"[https://site.example/@AlArabiya/live]"_s;
    const QByteArray address = "echo https://cdn.example/live.m3u8\n";
};

TEST_F(YtDlpProcessTest, AsksAnExecutable) {
    install(u"/usr/bin/yt-dlp"_s, address);
    EXPECT_EQ(resolve(), QUrl(u"https://cdn.example/live.m3u8"_s));
    EXPECT_EQ(calls(), QStringList{u"/usr/bin/yt-dlp "_s + query});
}

TEST_F(YtDlpProcessTest, AsksThePythonModule) {
    install(u"/usr/bin/which"_s, "exit 1\n");
    install(u"/usr/bin/python3"_s, R"(case "$*" in *--version) ;; *) )" + address + ";; esac\n");
    EXPECT_EQ(resolve(), QUrl(u"https://cdn.example/live.m3u8"_s));
    EXPECT_EQ(calls(), (QStringList{u"/usr/bin/which [yt-dlp]"_s,
                                    u"/usr/bin/python3 [-m] [yt_dlp] [--version]"_s,
                                    u"/usr/bin/python3 [-m] [yt_dlp] "_s + query}));
}

TEST_F(YtDlpProcessTest, ProbesThePlacesInOrder) {
    const QStringList places{u"/opt/homebrew/bin/yt-dlp"_s, u"/usr/local/bin/yt-dlp"_s,
                             u"/usr/bin/yt-dlp"_s, u"/home/Library/Python/3.9/bin/yt-dlp"_s,
                             u"/home/Library/Python/3.13/bin/yt-dlp"_s};
    for (const QString& place : places)
        install(place, address);
    QStringList found;
    for (const QString& place : places) {
        StreamResolver fresh(Origin::parse(u"https://site.example"_s),
                             HostFileSystem(folder.path(), folder.filePath(u"home"_s)), processes,
                             clock, tasks);
        EXPECT_TRUE(QCoro::waitFor(fresh.resolve(channel, Resolution::r480, {})));
        found += calls().last().section(u' ', 0, 0);
        QFile::remove(folder.path() + place);
    }
    EXPECT_EQ(found, places);
}

TEST_F(YtDlpProcessTest, TakesWhatWhichFindsAndTrustsItAfterwards) {
    install(u"/elsewhere/yt-dlp"_s, address);
    install(u"/usr/bin/which"_s, "echo \"$root/elsewhere/yt-dlp\"\n");
    EXPECT_TRUE(resolve());
    for (int again = 0; again < 2; ++again) {
        resolver.invalidateAllCache();
        EXPECT_TRUE(resolve());
    }
    EXPECT_EQ(calls().size(), 4);
    EXPECT_EQ(calls().first(), u"/usr/bin/which [yt-dlp]"_s);
    EXPECT_EQ(calls().last(), u"/elsewhere/yt-dlp "_s + query);
}

TEST_F(YtDlpProcessTest, InstallsWhatIsMissing) {
    install(u"/usr/bin/which"_s, "exit 1\n");
    install(u"/usr/bin/python3"_s, "exit 1\n");
    install(u"/opt/homebrew/bin/brew"_s, "printf '#!/bin/sh\\n" + address.trimmed() +
                                             R"(\n' > "$root/usr/bin/yt-dlp")"
                                             "\nchmod +x \"$root/usr/bin/yt-dlp\"\n");
    EXPECT_TRUE(resolve());
    EXPECT_EQ(calls(), (QStringList{
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
