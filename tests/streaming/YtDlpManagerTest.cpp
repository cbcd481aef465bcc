// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/YtDlpManager.h"

#include "base/TaskScope.h"
#include "platform/system/HttpClient.h"
#include "support/EventLoop.h"
#include "support/FakeClock.h"
#include "support/FakeMachine.h"
#include "support/LoopbackServer.h"

#include <QCoroTask>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

const QString which = u"/usr/bin/which [yt-dlp]"_s;

/// Real child processes and a real web server, on a machine of the test's own that has Python and
/// nothing else.
class YtDlpManagerTest : public testing::Test {
protected:
    YtDlpManagerTest() {
        machine.install(u"/usr/bin/which"_s, "exit 1\n");
        machine.install(u"/usr/bin/python3"_s);
        machine.install(u"/bin/chmod"_s, "exec /bin/chmod \"$@\"\n");
    }
    ~YtDlpManagerTest() override { QCoro::waitFor(tasks.join()); }

    [[nodiscard]] QString ensure() {
        const YtDlpManager::Installed installed = QCoro::waitFor(manager.ensureInstalled());
        QCoro::waitFor(tasks.join());
        return installed ? *installed : errorDescription(installed.error());
    }
    /// A script that puts a tool of the given version where `path` says.
    [[nodiscard]] static QByteArray putsTool(const QByteArray& path) {
        return "mkdir -p \"$(dirname \"$root" + path +
               "\")\"\nprintf '#!/bin/sh\\necho 2024.01.01\\n'"
               " > \"$root" +
               path + "\"\nchmod +x \"$root" + path + "\"\n";
    }
    void release(const QByteArray& tool, qsizetype cutAfter = -1) {
        server.answers[files + YtDlpManager::releasedExecutable] = {.body = tool,
                                                                    .cutAfter = cutAfter};
    }
    void publishSum(const QByteArray& tool) {
        const QByteArray sum = QCryptographicHash::hash(tool, QCryptographicHash::Sha256).toHex();
        server.answers[files + u"SHA2-256SUMS"_s] = {
            .body = "0000  yt-dlp_macos\n" + sum + "  " +
                    YtDlpManager::releasedExecutable.toLatin1() + "\n"};
    }
    [[nodiscard]] QStringList inLocalBin() const {
        return QDir(machine.real(u"/home/.local/bin"_s))
            .entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const QString files = u"/yt-dlp/yt-dlp/releases/latest/download/"_s;
    const QString notInstalled =
        u"Could not install yt-dlp. Please install manually: brew install yt-dlp"_s;
    test::FakeMachine machine;
    test::LoopbackServer server;
    LocalProcessRunner processes;
    test::FakeClock clock;
    HttpClient http{u"Orvane"_s};
    TaskScope tasks;
    YtDlpManager manager{
        machine.host(),
        processes,
        clock,
        http,
        {.gitHubApi = server.origin(), .gitHub = server.origin(), .gitHubRaw = server.origin()},
        tasks};
};

TEST_F(YtDlpManagerTest, FindsTheFixedPlacesInOrderAndThenAsksWhich) {
    QStringList places{u"/opt/homebrew/bin/yt-dlp"_s, u"/usr/local/bin/yt-dlp"_s,
                       u"/home/.local/bin/yt-dlp"_s};
    for (int minor = 9; minor <= 14; ++minor)
        places += u"/home/Library/Python/3.%1/bin/yt-dlp"_s.arg(minor);
    for (const QString& place : places)
        machine.install(place);
    machine.install(u"/elsewhere/yt-dlp"_s);
    machine.install(u"/usr/bin/which"_s, "echo \" $root/elsewhere/yt-dlp\"\n");
    for (const QString& place : places) {
        EXPECT_EQ(QCoro::waitFor(manager.findExisting()), machine.real(place));
        machine.remove(place);
    }
    EXPECT_TRUE(machine.calls().isEmpty());
    EXPECT_EQ(QCoro::waitFor(manager.findExisting()), machine.real(u"/elsewhere/yt-dlp"_s));
    machine.remove(u"/elsewhere/yt-dlp"_s);
    EXPECT_EQ(QCoro::waitFor(manager.findExisting()), std::nullopt);
    EXPECT_EQ(machine.calls(), (QStringList{which, which}));
}

TEST_F(YtDlpManagerTest, InstallsWithPip) {
    machine.install(u"/usr/bin/pip3"_s,
                    putsTool("/home/.local/bin/yt-dlp") + "echo \"$PATH\" > \"$root/path\"\n");
    EXPECT_EQ(ensure(), machine.real(u"/home/.local/bin/yt-dlp"_s));
    EXPECT_EQ(
        machine.calls(),
        (QStringList{which,
                     u"/usr/bin/pip3 [install] [--user] [--break-system-packages] [yt-dlp]"_s}));
    QFile path(machine.real(u"/path"_s));
    ASSERT_TRUE(path.open(QIODevice::ReadOnly));
    EXPECT_EQ(path.readAll().trimmed(),
              "/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/sbin:" + qgetenv("PATH"));
    EXPECT_TRUE(server.requests.isEmpty())
        << "a fresh installation needs no search for a newer one";
}

TEST_F(YtDlpManagerTest, InstallsWithAnOlderPip) {
    machine.install(u"/usr/local/bin/pip3"_s, "[ \"$3\" = yt-dlp ] || exit 2\n" +
                                                  putsTool("/home/Library/Python/3.9/bin/yt-dlp"));
    EXPECT_EQ(ensure(), machine.real(u"/home/Library/Python/3.9/bin/yt-dlp"_s));
    EXPECT_EQ(
        machine.calls(),
        (QStringList{which,
                     u"/usr/local/bin/pip3 [install] [--user] [--break-system-packages] [yt-dlp]"_s,
                     u"/usr/local/bin/pip3 [install] [--user] [yt-dlp]"_s}));
}

TEST_F(YtDlpManagerTest, InstallsWithHomebrewAfterAPipThatPutsItNowhere) {
    machine.install(u"/usr/bin/pip3"_s);
    machine.install(u"/usr/local/bin/brew"_s, putsTool("/usr/local/bin/yt-dlp"));
    EXPECT_EQ(ensure(), machine.real(u"/usr/local/bin/yt-dlp"_s));
    EXPECT_EQ(machine.calls(),
              (QStringList{which,
                           u"/usr/bin/pip3 [install] [--user] [--break-system-packages] [yt-dlp]"_s,
                           which, u"/usr/bin/pip3 [install] [--user] [yt-dlp]"_s, which,
                           u"/usr/local/bin/brew [install] [yt-dlp]"_s}));
}

TEST_F(YtDlpManagerTest, InstallsHomebrewItself) {
    machine.install(u"/tmp/brew"_s, putsTool("/opt/homebrew/bin/yt-dlp"));
    machine.install(u"/bin/bash"_s, "mkdir -p \"$root/opt/homebrew/bin\"\n"
                                    "cp \"$root/tmp/brew\" \"$root/opt/homebrew/bin/brew\"\n"
                                    "echo \"$NONINTERACTIVE $CI\" > \"$root/variables\"\nexit 1\n");
    EXPECT_EQ(ensure(), machine.real(u"/opt/homebrew/bin/yt-dlp"_s));
    const QString script = server.origin()->address(u"/Homebrew/install/HEAD/install.sh");
    EXPECT_EQ(machine.calls(),
              (QStringList{which,
                           u"/bin/bash [-c] [NONINTERACTIVE=1 /bin/bash -c \"$(curl -fsSL "_s +
                               script + u")\"]"_s,
                           u"/opt/homebrew/bin/brew [install] [yt-dlp]"_s}));
    QFile variables(machine.real(u"/variables"_s));
    ASSERT_TRUE(variables.open(QIODevice::ReadOnly));
    EXPECT_EQ(variables.readAll(), "1 1\n");
}

TEST_F(YtDlpManagerTest, DownloadsTheReleasedExecutable) {
    const QByteArray tool = "#!/bin/sh\necho 2024.01.01\n" + QByteArray(3'000'000, '#');
    for (const bool hasSum : {true, false}) {
        release(tool);
        if (hasSum)
            publishSum(tool);
        const QString path = machine.real(u"/home/.local/bin/yt-dlp"_s);
        EXPECT_EQ(QCoro::waitFor(manager.downloadBinary()), path);
        EXPECT_EQ(QFileInfo(path).size(), tool.size());
        EXPECT_TRUE(QFileInfo(path).isExecutable());
        EXPECT_EQ(inLocalBin(), QStringList{u"yt-dlp"_s});
        EXPECT_TRUE(machine.calls().last().startsWith(u"/bin/chmod [+x] ["_s));
        machine.remove(u"/home/.local/bin/yt-dlp"_s);
        server.answers.clear();
    }
    EXPECT_EQ(server.requests.first(), files + YtDlpManager::releasedExecutable + u" Orvane"_s);
}

TEST_F(YtDlpManagerTest, LeavesNothingBehindOfADownloadThatFails) {
    const QByteArray tool = "#!/bin/sh\n" + QByteArray(500'000, '#');
    EXPECT_EQ(ensure(), notInstalled) << "404";
    release(tool, 400'000);
    EXPECT_EQ(ensure(), notInstalled) << "cut";
    release(tool);
    publishSum("something else");
    EXPECT_EQ(ensure(), notInstalled) << "wrong sum";
    EXPECT_TRUE(inLocalBin().isEmpty());
    publishSum(tool);
    EXPECT_EQ(ensure(), machine.real(u"/home/.local/bin/yt-dlp"_s));
    // Nothing is made executable before it is whole and the right one.
    EXPECT_EQ(machine.calls().first(4), (QStringList{which, which, which, which}));
    ASSERT_EQ(machine.calls().size(), 5);
    EXPECT_TRUE(machine.calls().last().startsWith(u"/bin/chmod [+x] ["_s));
}

TEST_F(YtDlpManagerTest, WaitsAMinuteForPython) {
    machine.remove(u"/usr/bin/python3"_s);
    machine.install(u"/usr/bin/xcode-select"_s);
    EXPECT_EQ(ensure(), u"Python 3 is required. Please install Xcode Command Line Tools."_s);
    EXPECT_EQ(machine.calls(), (QStringList{which, u"/usr/bin/xcode-select [--install]"_s}));
    EXPECT_EQ(clock.sleeps, std::vector(30, std::chrono::milliseconds(2000)));
}

TEST_F(YtDlpManagerTest, SearchesAgainWhenTheToolHasGone) {
    machine.install(u"/opt/homebrew/bin/yt-dlp"_s, "exit 1\n");
    machine.install(u"/usr/local/bin/yt-dlp"_s, "exit 1\n");
    EXPECT_EQ(ensure(), machine.real(u"/opt/homebrew/bin/yt-dlp"_s));
    machine.remove(u"/opt/homebrew/bin/yt-dlp"_s);
    EXPECT_EQ(ensure(), machine.real(u"/usr/local/bin/yt-dlp"_s));
}

TEST_F(YtDlpManagerTest, UpgradesAnOlderToolOnceInARun) {
    const QString latest = u"/repos/yt-dlp/yt-dlp/releases/latest"_s;
    const QString version = u"/usr/local/bin/yt-dlp [--version]"_s;
    machine.install(u"/usr/local/bin/yt-dlp"_s, "echo 2024.01.01\n");
    machine.install(u"/usr/bin/pip3"_s, "exit 1\n");
    machine.install(u"/opt/homebrew/bin/brew"_s);

    for (const char* tag : {"2024.01.01", "2023.12.31", "2023.12.31.1"}) {
        server.answers[latest] = {.body = QByteArray(R"({"tag_name": ")") + tag + R"("})"};
        YtDlpManager other(machine.host(), processes, clock, http, {.gitHubApi = server.origin()},
                           tasks);
        testing::internal::CaptureStdout();
        QCoro::waitFor(other.ensureInstalled());
        QCoro::waitFor(tasks.join());
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << tag;
    }
    EXPECT_EQ(machine.calls(), (QStringList{version, version, version}));

    server.answers[latest] = {.body = R"({"tag_name": "2024.02.03", "other": 1})"};
    testing::internal::CaptureStdout();
    (void)ensure();
    (void)ensure();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "[Orvane] yt-dlp update: 2024.01.01 → 2024.02.03\n");
    EXPECT_EQ(
        machine.calls().sliced(3),
        (QStringList{
            version,
            u"/usr/bin/pip3 [install] [--user] [--upgrade] [--break-system-packages] [yt-dlp]"_s,
            u"/usr/bin/pip3 [install] [--user] [--upgrade] [yt-dlp]"_s,
            u"/opt/homebrew/bin/brew [upgrade] [yt-dlp]"_s}));
    EXPECT_EQ(server.requests.last(), latest + u" Orvane"_s);
    EXPECT_EQ(server.requests.size(), 4);
}

TEST_F(YtDlpManagerTest, HasNoLatestVersionFromAnAnswerThatIsNone) {
    for (const QByteArray& body :
         {QByteArray("no json"), QByteArray("[]"), QByteArray(R"({"tag_name": 3})"),
          QByteArray(5 * 1024 * 1024, ' ')}) {
        server.answers[u"/repos/yt-dlp/yt-dlp/releases/latest"_s] = {.body = body};
        EXPECT_EQ(QCoro::waitFor(manager.fetchLatestVersion()), std::nullopt);
    }
    server.answers.clear();
    EXPECT_EQ(QCoro::waitFor(manager.fetchLatestVersion()), std::nullopt);
}

TEST_F(YtDlpManagerTest, TellsWhenItInstalls) {
    QList<bool> told;
    manager.onInstalling([&](bool isInstalling) { told += isInstalling; });
    (void)ensure();
    EXPECT_EQ(told, (QList{true, false}));
    machine.install(u"/usr/local/bin/yt-dlp"_s);
    (void)ensure();
    EXPECT_EQ(told.size(), 2);
}

} // namespace
} // namespace orvane
