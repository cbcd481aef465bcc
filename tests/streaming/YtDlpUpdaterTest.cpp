// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpUpdater.h"

#include "support/ToolSetup.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <map>

namespace orvane {

using namespace Qt::StringLiterals;
using test::localBin;
using test::notInstalled;
using test::ToolSetup;

namespace {

TEST(NewestYtDlp, NamesTheNewestOnTheMachine) {
    const QString first = u"/usr/bin/yt-dlp"_s;
    const QString python = u"/usr/bin/python3"_s;
    const QString elsewhere = u"/elsewhere/yt-dlp"_s;
    const QString own = u"/data/yt-dlp"_s;
    const auto prints = [](const QByteArray& version) { return "echo " + version + "\n"; };
    const struct {
        std::map<QString, QByteArray> programs;
        QString newest;
    } rows[] = {
        {{{localBin, "exit 1\n"}}, {}},
        {{{first, prints("2023.03.04")},
          {u"/home/Library/Python/3.14/bin/yt-dlp"_s, prints("2025.04.30")}},
         u"/home/Library/Python/3.14/bin/yt-dlp"_s},
        {{{first, prints("2025.04.30")}, {localBin, prints("2026.10.26; exit 1")}}, first},
        {{{first, prints("2026.10.26")}, {localBin, prints("2026.10.26.123456")}}, localBin},
        {{{first, prints("2026.10.26")}, {localBin, prints("master")}}, first},
        {{{first, prints("2026.10.26")}, {own, prints("2026.10.26")}}, first},
        {{{first, prints("2025.04.30")}, {own, prints("2026.10.26")}}, own},
        {{{first, prints("2025.04.30")}, {elsewhere, prints("2026.10.26")}}, elsewhere},
        {{{first, prints("2025.04.30")}, {python, prints("2026.10.26")}},
         u"/usr/bin/python3 -m yt_dlp"_s},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.newest.toStdString());
        ToolSetup setup;
        setup.machine.install(u"/usr/bin/which"_s,
                              "[ \"$1\" = -a ] && echo \"$root/usr/bin/yt-dlp\" && "
                              "echo \"$root/elsewhere/yt-dlp\"\n");
        for (const auto& [program, script] : row.programs)
            setup.machine.install(program, script);
        EXPECT_EQ(setup.newest(), row.newest);
    }
}

TEST(NewestYtDlp, AsksAFileForItsVersionOnlyOnceUntilItChanges) {
    ToolSetup setup;
    const auto asked = [&](const QString& place) {
        return setup.machine.calls().count(place + u" [--version]"_s);
    };
    setup.machine.install(localBin, "echo 2026.10.26\n");
    const QString link = u"/usr/local/bin/yt-dlp"_s;
    QDir().mkpath(QFileInfo(setup.machine.real(link)).path());
    ASSERT_TRUE(QFile::link(setup.machine.real(localBin), setup.machine.real(link)));
    QCoro::Task<std::optional<YtDlpTool::Candidate>> atTheSameTime = setup.tool.newest();
    EXPECT_EQ(setup.newest(), link);
    EXPECT_EQ(QCoro::waitFor(atTheSameTime)->version, u"2026.10.26"_s);
    EXPECT_EQ(setup.newest(), link);
    EXPECT_EQ(asked(link) + asked(localBin), 1);
    setup.machine.install(localBin, "echo '2026.10.27'\n");
    EXPECT_EQ(setup.newest(), link);
    EXPECT_EQ(asked(link), 2);
    // An upgrade of a module changes no file that is asked.
    setup.tool.becameNewer();
    EXPECT_EQ(setup.newest(), link);
    EXPECT_EQ(asked(link), 3);
}

class YtDlpUpdaterTest : public testing::Test, protected ToolSetup {
protected:
    YtDlpUpdaterTest() {
        machine.install(u"/usr/bin/which"_s, "echo \"$root/usr/bin/yt-dlp\"\n");
        tool.onNewer([this] { ++newerReports; });
    }
    /// Publishes a release whose version is `version`.
    void release(const QByteArray& version) {
        const QByteArray file = "#!/bin/sh\necho " + version + "\n";
        server.answers[u"/repos/yt-dlp/yt-dlp/releases/latest"_s] = {.body = R"({"tag_name": ")" +
                                                                             version + R"("})"};
        publish(file);
        publishChecksum(file);
    }
    [[nodiscard]] QString update() {
        const YtDlpUpdateOutcome::Value outcome =
            QCoro::waitFor(updater.update([this](const QString& step) { steps += step; }));
        if (const auto* updated = std::get_if<YtDlpUpdateOutcome::Updated>(&outcome))
            return updated->from + u" > "_s + updated->to;
        if (const auto* same = std::get_if<YtDlpUpdateOutcome::UpToDate>(&outcome))
            return same->version;
        return std::get<YtDlpUpdateOutcome::Failed>(outcome).reason;
    }

    const QString own = u"/data/yt-dlp"_s;
    const QString system = u"/usr/bin/yt-dlp"_s;
    int newerReports = 0;
    QStringList steps;
};

TEST_F(YtDlpUpdaterTest, KeepsAPrivateCopyWhereNothingElseHelpsForSixtyDays) {
    const QByteArray upgrades =
        "printf '#!/bin/sh\\necho 2024.04.01\\n' > \"$root/usr/bin/yt-dlp\"\n";
    const struct {
        QByteArray latest;
        QByteArray pip;
        /// The version of a private copy from an earlier run.
        QByteArray earlier;
        QString copied;
        int newerReports;
    } rows[] = {
        {"2024.04.01", "exit 1\n", {}, u"2024.04.01"_s, 1},
        {"2024.03.01", "exit 1\n", {}, {}, 0},
        {"2024.03.02.123456", "exit 1\n", {}, u"2024.03.02.123456"_s, 1},
        // pip keeps the old one without a failure.
        {"2024.04.01", "exit 0\n", {}, u"2024.04.01"_s, 2},
        {"2024.04.01", upgrades, {}, {}, 1},
        {"2024.04.01", "exit 1\n", "2024.02.15", u"2024.02.15"_s, 0},
        {"2024.05.01", "exit 1\n", "2024.02.15", u"2024.05.01"_s, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE((row.latest + ' ' + row.pip + row.earlier).constData());
        newerReports = 0;
        machine.remove(own);
        machine.install(system, "echo 2024.01.01\n");
        machine.install(u"/usr/bin/pip3"_s, row.pip);
        if (!row.earlier.isEmpty())
            machine.install(own, "echo " + row.earlier + "\n");
        release(row.latest);
        YtDlpManager nextStart(tool, updater, tasks);
        testing::internal::CaptureStdout();
        const YtDlpTool::Installed used = QCoro::waitFor(nextStart.ensureInstalled());
        QCoro::waitFor(tasks.join());
        testing::internal::GetCapturedStdout();
        EXPECT_EQ(describe(used), system);
        EXPECT_EQ(read(own).section(u' ', -1), row.copied.isEmpty() ? u"file"_s : row.copied);
        EXPECT_EQ(newerReports, row.newerReports);
        EXPECT_EQ(newest(), row.copied.isEmpty() ? system : own);
        EXPECT_EQ(find(YtDlpSearch::of(YtDlpUser::streamResolver)), system);
        EXPECT_TRUE(inLocalBin().isEmpty());
    }
}

TEST_F(YtDlpUpdaterTest, UpdatesOnRequestWheneverTheReleaseIsNewer) {
    EXPECT_FALSE(QCoro::waitFor(updater.status()));
    machine.install(system, "echo 2024.01.01\n");
    const std::optional<YtDlpStatus> status = QCoro::waitFor(updater.status());
    ASSERT_TRUE(status);
    EXPECT_EQ(status->program, machine.real(system));
    EXPECT_EQ(status->version, u"2024.01.01"_s);
    EXPECT_EQ(status->released, QDate(2024, 1, 1));

    EXPECT_EQ(update(), u"The newest release could not be looked up. Is there a network?"_s);
    release("2024.01.01");
    EXPECT_EQ(update(), u"2024.01.01"_s);
    release("2024.01.02");
    server.answers.remove(files + u"SHA2-256SUMS"_s);
    EXPECT_EQ(update(), errorDescription(YtDlpDownloadError::noChecksums));
    release("2024.01.02");
    steps.clear();
    EXPECT_EQ(update(), u"2024.01.01 > 2024.01.02"_s);
    EXPECT_EQ(steps, (QStringList{u"Looking for yt-dlp's newest release..."_s,
                                  u"Upgrading yt-dlp from 2024.01.01 to 2024.01.02..."_s,
                                  u"Downloading yt-dlp 2024.01.02..."_s}));
    EXPECT_EQ(newest(), own);
    EXPECT_EQ(QCoro::waitFor(updater.status())->newer, u"2024.01.02"_s);
    // Once a channel has played with it.
    preferred = YtDlpCommand{.program = tool.privateCopy()};
    EXPECT_EQ(QCoro::waitFor(updater.status())->version, u"2024.01.02"_s);
    EXPECT_EQ(update(), u"2024.01.02"_s);
    // By pip, which is preferred.
    release("2024.01.03");
    machine.install(u"/usr/bin/pip3"_s,
                    "printf '#!/bin/sh\\necho 2024.01.03\\n' > \"$root/usr/bin/yt-dlp\"\n");
    EXPECT_EQ(update(), u"2024.01.02 > 2024.01.03"_s);
    EXPECT_EQ(newest(), system);
}

TEST_F(YtDlpUpdaterTest, InstallsAMissingToolOnRequestForEveryCallerOnce) {
    EXPECT_EQ(update(), notInstalled);
    release("2024.01.01");
    QCoro::Task<YtDlpUpdateOutcome::Value> first = updater.update([](const QString&) {});
    EXPECT_EQ(update(), u" > 2024.01.01"_s);
    EXPECT_TRUE(std::holds_alternative<YtDlpUpdateOutcome::Updated>(QCoro::waitFor(first)));
    EXPECT_EQ(server.requests.count(files + u"yt-dlp_linux Orvane"_s), 1);
    EXPECT_EQ(newest(), localBin);
}

} // namespace
} // namespace orvane
