// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpTool.h"

#include "streaming/StreamResolver.h"
#include "support/ToolSetup.h"

#include <gtest/gtest.h>

#include <map>

namespace orvane {

using namespace Qt::StringLiterals;
using test::localBin;
using test::notInstalled;
using test::ToolSetup;

namespace {

const QString which = u"/usr/bin/which [yt-dlp]"_s;
const QString moduleVersion = u"/usr/bin/python3 [-m] [yt_dlp] [--version]"_s;
const QString modulePip = u"/usr/bin/python3 [-m] [pip] [install] [--user] [--quiet] [yt-dlp]"_s;
const QString pip = u"/usr/bin/pip3 [install] [--user] [--break-system-packages] [yt-dlp]"_s;
const QString olderPip = u"/usr/bin/pip3 [install] [--user] [yt-dlp]"_s;

const QString extendedPath = u"/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/sbin:"_s;

/// A script that puts an executable at `path` and its own search path into "/path".
QByteArray puts(const QString& path) {
    return "echo \"$PATH\" > \"$root/path\"\nfile=\"$root" + path.toUtf8() +
           "\"\nmkdir -p \"${file%/*}\"\n"
           "printf '#!/bin/sh\\necho 2024.01.01\\n' > \"$file\"\nchmod +x \"$file\"\n";
}

QStringList userScripts(int lastMinor) {
    QStringList places;
    for (int minor = 9; minor <= lastMinor; ++minor)
        places += u"/home/Library/Python/3.%1/bin/yt-dlp"_s.arg(minor);
    return places;
}

TEST(YtDlpSearch, TriesThePlacesOfEachUserThenWhichThenThePythonModule) {
    const QStringList common{u"/opt/homebrew/bin/yt-dlp"_s, u"/usr/local/bin/yt-dlp"_s};
    const QStringList linuxBrew{u"/home/linuxbrew/.linuxbrew/bin/yt-dlp"_s,
                                u"/home/.linuxbrew/bin/yt-dlp"_s};
    const QString module = u"/usr/bin/python3 -m yt_dlp"_s;
    const struct {
        YtDlpUser user;
        QStringList places;
        bool takesAnyFile;
        QString pathPrefix;
        /// The last result, with a Python that cannot run the module and with one that can.
        QStringList modules;
        QStringList calls;
    } rows[] = {
        {YtDlpUser::manager,
         common + QStringList{localBin} + userScripts(14) + linuxBrew,
         true,
         extendedPath,
         {{}, {}},
         {which, which, which}},
        {YtDlpUser::streamResolver,
         common + QStringList{u"/usr/bin/yt-dlp"_s} + userScripts(13) + linuxBrew,
         false,
         {},
         {{}, module},
         {which, which, moduleVersion, which, moduleVersion}},
        {YtDlpUser::channelResolver,
         common + QStringList{localBin} + linuxBrew,
         false,
         extendedPath,
         {module, module},
         {which, which, which}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.user));
        ToolSetup setup;
        const YtDlpSearch search = YtDlpSearch::of(row.user);
        setup.machine.install(u"/elsewhere/yt-dlp"_s);
        setup.machine.install(u"/usr/bin/which"_s, "echo \"$PATH\" > \"$root/path\"\n"
                                                   "echo \" $root/elsewhere/yt-dlp\"\n");
        for (const QString& place : row.places)
            setup.machine.install(place);
        for (const QString& place : row.places) {
            EXPECT_EQ(setup.find(search), place);
            QFile::setPermissions(setup.machine.real(place), QFile::ReadOwner);
            EXPECT_EQ(setup.find(search) == place, row.takesAnyFile);
            setup.machine.remove(place);
        }
        setup.machine.forgetCalls();
        EXPECT_EQ(setup.find(search), u"/elsewhere/yt-dlp"_s);
        EXPECT_EQ(setup.read(u"/path"_s), row.pathPrefix + qEnvironmentVariable("PATH"));
        setup.machine.remove(u"/elsewhere/yt-dlp"_s);
        EXPECT_EQ(setup.find(search), row.modules.first());
        setup.machine.install(u"/usr/bin/python3"_s);
        EXPECT_EQ(setup.find(search), row.modules.last());
        EXPECT_EQ(setup.machine.calls(), row.calls);
    }
}

TEST(YtDlpPlan, RunsItsStepsUntilOneHasInstalledTheTool) {
    const YtDlpPlan manager = YtDlpPlan::ofManager();
    const YtDlpPlan resolver = YtDlpPlan::ofStreamResolver();
    const QString pip3 = u"/usr/bin/pip3"_s;
    const QString python = u"/usr/bin/python3"_s;
    const QString homebrew = u"/opt/homebrew/bin/brew"_s;
    const QString otherBrew = u"/usr/local/bin/brew"_s;
    const QString linuxBrew = u"/home/linuxbrew/.linuxbrew/bin/brew"_s;
    const QString ownBrew = u"/home/.linuxbrew/bin/brew"_s;
    const QString installs = u" [install] [yt-dlp]"_s;
    const struct {
        YtDlpPlan plan;
        std::map<QString, QByteArray> programs;
        QString installed;
        QStringList calls;
    } rows[] = {
        {manager, {{pip3, puts(localBin)}}, localBin, {pip}},
        {manager,
         {{pip3, "[ \"$3\" = yt-dlp ] || exit 2\n" + puts(userScripts(9).first())}},
         userScripts(9).first(),
         {pip, olderPip}},
        // Homebrew after a pip that leaves no executable.
        {manager,
         {{pip3, {}}, {otherBrew, puts(localBin)}},
         localBin,
         {pip, which, olderPip, which, otherBrew + installs}},
        {manager, {}, notInstalled, {}},
        {resolver,
         {{python, puts(u"/module"_s) + "[ \"$2\" = pip ] || [ -e \"$root/module\" ]\n"}},
         u"/usr/bin/python3 -m yt_dlp"_s,
         {modulePip, moduleVersion}},
        {resolver, {{python, puts(userScripts(13).last())}}, userScripts(13).last(), {modulePip}},
        // A pip that leaves nothing ends this plan.
        {resolver,
         {{python, "[ \"$2\" = pip ]\n"}, {homebrew, puts(u"/usr/bin/yt-dlp"_s)}},
         notInstalled,
         {modulePip, moduleVersion}},
        {resolver,
         {{homebrew, puts(u"/usr/bin/yt-dlp"_s)}},
         u"/usr/bin/yt-dlp"_s,
         {modulePip, homebrew + installs}},
        {resolver, {{otherBrew, puts(u"/usr/bin/yt-dlp"_s)}}, notInstalled, {modulePip}},
        {resolver,
         {{linuxBrew, puts(u"/home/.linuxbrew/bin/yt-dlp"_s)}},
         u"/home/.linuxbrew/bin/yt-dlp"_s,
         {modulePip, linuxBrew + installs}},
        {manager,
         {{ownBrew, puts(u"/home/.linuxbrew/bin/yt-dlp"_s)}},
         u"/home/.linuxbrew/bin/yt-dlp"_s,
         {ownBrew + installs}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.calls.join(u", ").toStdString());
        ToolSetup setup;
        for (const auto& [program, script] : row.programs)
            setup.machine.install(program, script);
        EXPECT_EQ(setup.install(row.plan), row.installed);
        EXPECT_EQ(setup.machine.calls(), row.calls);
        if (row.installed != notInstalled) {
            const QString prefix = row.plan.user == YtDlpUser::manager ? extendedPath : QString();
            EXPECT_EQ(setup.read(u"/path"_s), prefix + qEnvironmentVariable("PATH"));
        }
    }
}

TEST(YtDlpPlan, InstallsHomebrewItself) {
    ToolSetup setup;
    setup.machine.install(u"/tmp/brew"_s, puts(u"/opt/homebrew/bin/yt-dlp"_s));
    setup.machine.install(u"/bin/bash"_s,
                          "mkdir -p \"$root/opt/homebrew/bin\"\n"
                          "cp \"$root/tmp/brew\" \"$root/opt/homebrew/bin/brew\"\n"
                          "echo \"$NONINTERACTIVE $CI\" > \"$root/variables\"\nexit 1\n");
    EXPECT_EQ(setup.install(YtDlpPlan::ofManager()), u"/opt/homebrew/bin/yt-dlp"_s);
    const QString script = setup.server.origin()->address(u"/Homebrew/install/HEAD/install.sh");
    EXPECT_EQ(setup.machine.calls(),
              (QStringList{u"/bin/bash [-c] [NONINTERACTIVE=1 /bin/bash -c \"$(curl -fsSL "_s +
                               script + u")\"]"_s,
                           u"/opt/homebrew/bin/brew [install] [yt-dlp]"_s}));
    EXPECT_EQ(setup.read(u"/variables"_s), u"1 1"_s);
}

TEST(YtDlpPlan, WaitsAMinuteForPython) {
    ToolSetup setup;
    setup.machine.remove(u"/usr/bin/python3"_s);
    setup.machine.install(u"/usr/bin/xcode-select"_s);
    EXPECT_EQ(setup.install(YtDlpPlan::ofManager()),
              u"Python 3 is required. Please install Xcode Command Line Tools."_s);
    EXPECT_EQ(setup.machine.calls(), QStringList{u"/usr/bin/xcode-select [--install]"_s});
    EXPECT_EQ(setup.clock.sleeps, std::vector(30, std::chrono::milliseconds(2000)));
}

TEST(YtDlpManager, SearchesAgainIfTheToolWasRemoved) {
    ToolSetup setup;
    for (const QString& place : {u"/opt/homebrew/bin/yt-dlp"_s, u"/usr/local/bin/yt-dlp"_s}) {
        setup.machine.install(place, "exit 1\n");
        EXPECT_EQ(setup.ensure(), place);
        setup.machine.remove(place);
    }
    EXPECT_EQ(setup.ensure(), notInstalled);
}

TEST(YtDlpTool, IsReplacedOnceInTheSameCallIfItDoesNotRun) {
    const QString broken = u"/usr/local/bin/yt-dlp"_s;
    const QString next = u"/usr/bin/yt-dlp"_s;
    const QString python = u"/usr/bin/python3"_s;
    const QByteArray onlyPip = "[ \"$2\" = pip ] || exit 1\n";
    const QByteArray moduleIsGone = "exec /usr/bin/python3 -c 'import yt_dlp.that_is_gone'\n";
    const QByteArray otherMachine = QByteArray("\x7f"
                                               "ELF\2\1\1")
                                        .leftJustified(16, 0) +
                                    QByteArray("\2\0\xf3\0\1", 5).leftJustified(48, 0);
    const struct {
        QByteArray script;
        /// The whole file, instead of the script.
        QByteArray file;
        std::map<QString, QByteArray> others;
        QString resolved;
        QStringList runs;
    } rows[] = {
        {moduleIsGone,
         {},
         {{next, "echo https://cdn.example/next\n"}},
         u"https://cdn.example/next"_s,
         {broken, broken, next, next}},
        {moduleIsGone,
         {},
         {{python, onlyPip + puts(broken)}},
         u"2024.01.01"_s,
         {broken, broken, python, python}},
        {{},
         otherMachine,
         {{python, onlyPip + puts(userScripts(13).last())}},
         u"2024.01.01"_s,
         {python, python}},
        // An installation that leaves nothing that runs.
        {"exit 127\n",
         {},
         {{python, onlyPip}},
         u"Stream resolve failed: "_s,
         {broken, broken, python, python, python, broken, broken, broken, broken, broken}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.runs.join(u", ").toStdString());
        ToolSetup setup;
        setup.machine.remove(u"/usr/bin/which"_s);
        setup.machine.install(broken, row.script);
        QFile file(setup.machine.real(broken));
        ASSERT_TRUE(row.file.isEmpty() ||
                    (file.open(QFile::WriteOnly) && file.write(row.file) > 0));
        file.close();
        for (const auto& [path, script] : row.others)
            setup.machine.install(path, script);
        StreamLadder ladder({}, setup.clock);
        StreamResolver resolver(Origin::parse(u"https://site.example"_s), setup.tool, ladder,
                                setup.clock, setup.tasks);
        const Channel channel = Channel::custom(u"Mine"_s, u"Mine"_s);
        for (int call = 0; call < 2; ++call) {
            resolver.invalidateAllCache();
            const StreamResolver::Result result =
                QCoro::waitFor(resolver.resolve(channel, Resolution::r480, {}));
            EXPECT_EQ(result ? result->picture.toString() : errorDescription(result.error()),
                      row.resolved);
        }
        QCoro::waitFor(setup.tasks.join());
        QStringList runs;
        for (const QString& call : setup.machine.calls())
            if (!call.contains(u"--rm-cache-dir"_s))
                runs += call.section(u' ', 0, 0);
        EXPECT_EQ(runs, row.runs);
    }
}

TEST(YtDlpManager, InstallsAnotherToolForOneThatDoesNotRun) {
    for (const QString& place : {localBin, u"/usr/local/bin/yt-dlp"_s}) {
        ToolSetup setup;
        setup.machine.install(u"/usr/local/bin/yt-dlp"_s, "exit 1\n");
        setup.machine.install(u"/usr/bin/pip3"_s, puts(place));
        EXPECT_EQ(setup.ensure(), u"/usr/local/bin/yt-dlp"_s);
        EXPECT_EQ(setup.ensure(), place);
        EXPECT_EQ(setup.machine.calls().count(pip), 1);
        EXPECT_EQ(setup.machine.calls().count(olderPip), 0);
    }
}

TEST(YtDlpManager, ReportsItsInstallationAndLooksForNoNewerReleaseAfterIt) {
    ToolSetup setup;
    QList<bool> reports;
    setup.manager.onInstalling([&](bool isInstalling) { reports += isInstalling; });
    EXPECT_EQ(setup.ensure(), notInstalled);
    EXPECT_EQ(reports, (QList{true, false}));
    setup.machine.install(u"/usr/bin/pip3"_s, puts(u"/usr/local/bin/yt-dlp"_s));
    setup.server.requests.clear();
    EXPECT_EQ(setup.ensure(), u"/usr/local/bin/yt-dlp"_s);
    EXPECT_TRUE(setup.server.requests.isEmpty());
    EXPECT_EQ(setup.ensure(), u"/usr/local/bin/yt-dlp"_s);
    EXPECT_EQ(reports, (QList{true, false, true, false}));
}

TEST(YtDlpManager, UpgradesAnOlderToolOnceInARun) {
    const QString latest = u"/repos/yt-dlp/yt-dlp/releases/latest"_s;
    const QStringList version{u"/usr/local/bin/yt-dlp [--version]"_s};
    const QStringList upgrades{
        u"/usr/bin/pip3 [install] [--user] [--upgrade] [--break-system-packages] [yt-dlp]"_s,
        u"/usr/bin/pip3 [install] [--user] [--upgrade] [yt-dlp]"_s,
        u"/opt/homebrew/bin/brew [upgrade] [yt-dlp]"_s};
    const struct {
        QByteArray tag;
        /// The condition under which pip succeeds.
        QByteArray pip;
        QByteArray line;
        QStringList calls;
    } rows[] = {
        {"2024.01.01", "true", {}, version},
        {"2023.12.31", "true", {}, version},
        {"2023.12.31.1", "true", {}, version},
        {"2024.02.03", "true", "2024.01.01 → 2024.02.03", version + upgrades.first(1)},
        {"2024.02.03", "[ \"$4\" = yt-dlp ]", "2024.01.01 → 2024.02.03",
         version + upgrades.first(2)},
        {"2024.02.03", "false", "2024.01.01 → 2024.02.03", version + upgrades},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE((row.tag + row.pip).constData());
        ToolSetup setup;
        setup.machine.install(u"/usr/local/bin/yt-dlp"_s, "echo 2024.01.01\n");
        setup.machine.install(u"/usr/bin/pip3"_s, row.pip);
        setup.machine.install(u"/opt/homebrew/bin/brew"_s);
        setup.server.answers[latest] = {.body =
                                            R"({"tag_name": ")" + row.tag + R"(", "other": 1})"};
        testing::internal::CaptureStdout();
        (void)setup.ensure();
        (void)setup.ensure();
        EXPECT_EQ(QByteArray::fromStdString(testing::internal::GetCapturedStdout()),
                  row.line.isEmpty() ? QByteArray()
                                     : QByteArray("[Orvane] yt-dlp update: " + row.line + "\n"));
        EXPECT_EQ(setup.machine.calls(), row.calls);
        EXPECT_EQ(setup.server.requests, QStringList{latest + u" Orvane"_s});
    }
}

} // namespace
} // namespace orvane
