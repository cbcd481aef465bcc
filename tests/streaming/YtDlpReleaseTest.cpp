// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/YtDlpRelease.h"

#include "support/ToolSetup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <expected>

namespace orvane {

using namespace Qt::StringLiterals;
using test::localBin;
using test::notInstalled;
using test::ToolSetup;

namespace {

/// Returns an archive that Python runs, as yt-dlp is released.
QByteArray pythonArchive(const QByteArray& program) {
    const QTemporaryDir folder;
    QDir().mkpath(folder.filePath(u"in"_s));
    QFile main(folder.filePath(u"in/__main__.py"_s));
    EXPECT_TRUE(main.open(QIODevice::WriteOnly));
    main.write("#!/usr/bin/env python3\n" + program);
    main.close();
    EXPECT_EQ(QProcess::execute(u"python3"_s,
                                {u"-m"_s, u"zipapp"_s, u"-p"_s, u"/usr/bin/env python3"_s, u"-o"_s,
                                 folder.filePath(u"out"_s), folder.filePath(u"in"_s)}),
              0);
    QFile archive(folder.filePath(u"out"_s));
    EXPECT_TRUE(archive.open(QIODevice::ReadOnly));
    return archive.readAll();
}

TEST(YtDlpRelease, DownloadsTheBestFileForTheMachine) {
    using Error = YtDlpDownloadError;
    const QByteArray any = "yt-dlp";
    const QByteArray linux = "yt-dlp_linux";
    const QByteArray arm64 = "yt-dlp_linux_aarch64";
    const QByteArray arm = "yt-dlp_linux_armv7l";
    const struct {
        /// Empty: Python is missing.
        QByteArray python;
        QString architecture;
        QList<QByteArray> files;
        /// The file that is downloaded, which prints its name.
        std::expected<QByteArray, Error> downloaded;
        /// The file that does not run.
        QByteArray broken = {};
    } rows[] = {
        {"3.11.2", u"x86_64"_s, {any, linux, arm64}, any},
        {"3.10.0", u"riscv64"_s, {any, linux, arm64}, any},
        {"3.9.18", u"x86_64"_s, {any, linux, arm64}, linux},
        {{}, u"x86_64"_s, {any, linux, arm64}, linux},
        {"3.9.18", u"arm64"_s, {any, linux, arm64}, arm64},
        {{}, u"arm"_s, {any, linux, arm}, arm},
        {{}, u"arm"_s, {any, linux, arm + ".zip"}, std::unexpected(Error::noFile)},
        {"3.9.18", u"riscv64"_s, {any, linux, arm64}, std::unexpected(Error::noFile)},
        {"3.11.2", u"x86_64"_s, {linux, arm64}, linux},
        {"3.11.2", u"x86_64"_s, {any, linux}, linux, any},
        {"3.11.2", u"arm64"_s, {any}, std::unexpected(Error::doesNotRun), any},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE((row.python + ' ' + row.architecture.toLatin1()).constData());
        ToolSetup setup(row.architecture);
        setup.machine.install(u"/usr/bin/python3"_s, "echo Python " + row.python + "\n");
        if (row.python.isEmpty())
            setup.machine.remove(u"/usr/bin/python3"_s);
        for (const QByteArray& name : row.files) {
            const QByteArray file =
                "#!/bin/sh\n" + (name == row.broken ? "exit 1\n" : "echo " + name + "\n");
            setup.server.answers[setup.files + QString::fromLatin1(name)] = {.body = file};
            setup.publishChecksum(file, name);
        }
        const YtDlpRelease::Downloaded downloaded =
            QCoro::waitFor(setup.tool.release().download(setup.machine.real(u"/new/yt-dlp"_s)));
        ASSERT_EQ(downloaded.has_value(), row.downloaded.has_value());
        if (downloaded)
            EXPECT_EQ(downloaded->version, QString::fromLatin1(*row.downloaded));
        else
            EXPECT_EQ(downloaded.error(), row.downloaded.error());
    }
}

TEST(YtDlpRelease, ReplacesAFileOnlyByOneThatIsCompleteVerifiedAndRuns) {
    const QByteArray executable = "#!/bin/sh\necho 2024.01.01\n" + QByteArray(500'000, '#');
    const QByteArray broken = "#!/bin/sh\n";
    ToolSetup setup;
    const QString destination = setup.machine.real(localBin);
    const auto failure = [&] {
        const YtDlpRelease::Downloaded downloaded =
            QCoro::waitFor(setup.tool.release().download(destination));
        EXPECT_EQ(setup.read(localBin).section(u'\n', -1), u"echo mine"_s);
        EXPECT_EQ(setup.inLocalBin(), QStringList{u"yt-dlp"_s});
        return downloaded ? std::nullopt : std::optional(downloaded.error());
    };
    setup.machine.install(localBin, "echo mine\n");
    setup.publish(executable);
    EXPECT_EQ(failure(), YtDlpDownloadError::noChecksums);
    setup.publishChecksum(executable, "yt-dlp_linux_aarch64");
    EXPECT_EQ(failure(), YtDlpDownloadError::noFile);
    setup.publishChecksum("something else");
    EXPECT_EQ(failure(), YtDlpDownloadError::wrongChecksum);
    setup.publishChecksum(executable);
    setup.publish(executable, 400'000);
    EXPECT_EQ(failure(), YtDlpDownloadError::incomplete);
    setup.publish(broken);
    setup.publishChecksum(broken);
    EXPECT_EQ(failure(), YtDlpDownloadError::doesNotRun);

    setup.machine.remove(localBin);
    EXPECT_EQ(setup.ensure(), notInstalled);
    setup.publish(executable);
    setup.publishChecksum(executable);
    EXPECT_EQ(setup.ensure(), localBin);
    EXPECT_EQ(QFileInfo(destination).size(), executable.size());
    EXPECT_EQ(setup.inLocalBin(), QStringList{u"yt-dlp"_s});
    EXPECT_TRUE(setup.machine.calls().last().startsWith(u"/bin/chmod [+x] ["_s));
    EXPECT_EQ(setup.server.requests.last(), setup.files + u"yt-dlp_linux Orvane"_s);
}

TEST(YtDlpRelease, UnpacksTheFileForPythonAndKeepsTheReleaseBefore) {
    ToolSetup setup;
    setup.machine.install(u"/usr/bin/python3"_s, "exec python3 \"$@\"\n");
    const QDir folder(setup.machine.real(u"/new"_s));
    const QString destination = folder.filePath(u"yt-dlp"_s);
    for (const QByteArray& version : {"2024.01.01"_ba, "2024.02.02"_ba, "2024.03.03"_ba}) {
        const QByteArray archive = pythonArchive("print('" + version + "')\n");
        setup.server.answers[setup.files + u"yt-dlp"_s] = {.body = archive};
        setup.publishChecksum(archive, "yt-dlp");
        const YtDlpRelease::Downloaded downloaded =
            QCoro::waitFor(setup.tool.release().download(destination));
        ASSERT_TRUE(downloaded);
        EXPECT_EQ(downloaded->version, QString::fromLatin1(version));
        const QFileInfo start(QFileInfo(destination).canonicalFilePath());
        EXPECT_EQ(start.fileName(), u"__main__.py");
        EXPECT_FALSE(QDir(start.path() + u"/__pycache__"_s).isEmpty());
    }
    EXPECT_EQ(folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 3);
}

TEST(YtDlpRelease, HasNoVersionFromAnUnusableAnswer) {
    ToolSetup setup;
    for (const QByteArray& body :
         {QByteArray("no json"), QByteArray("[]"), QByteArray(R"({"tag_name": 3})"),
          QByteArray(5 * 1024 * 1024, ' ')}) {
        setup.server.answers[u"/repos/yt-dlp/yt-dlp/releases/latest"_s] = {.body = body};
        EXPECT_EQ(QCoro::waitFor(setup.tool.release().latestVersion()), std::nullopt);
    }
    setup.server.answers.clear();
    EXPECT_EQ(QCoro::waitFor(setup.tool.release().latestVersion()), std::nullopt);
}

} // namespace
} // namespace orvane
