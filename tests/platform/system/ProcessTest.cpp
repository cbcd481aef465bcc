// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/Process.h"

#include "support/EventLoop.h"

#include <QCoroTask>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

namespace orvane {

using namespace Qt::StringLiterals;
using test::runUntil;

namespace {

class ProcessTest : public testing::Test {
protected:
    [[nodiscard]] ProcessOutcome run(const QString& script) {
        return QCoro::waitFor(runner.run(shell(script), {}));
    }
    [[nodiscard]] static ProcessRequest shell(const QString& script) {
        return {.program = u"/bin/sh"_s, .arguments = {u"-c"_s, script}, .environment = {}};
    }
    [[nodiscard]] static QCoro::Task<> keep(LocalProcessRunner* children, ProcessRequest request,
                                            std::stop_token stop,
                                            std::optional<ProcessOutcome>* result) {
        *result = co_await children->run(request, stop);
    }
    [[nodiscard]] qint64 pidFrom(const QString& name) const {
        QFile file(folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toLongLong() : 0;
    }
    [[nodiscard]] static bool isAlive(qint64 pid) {
        return ::kill(static_cast<pid_t>(pid), 0) == 0;
    }

    QTemporaryDir folder;
    LocalProcessRunner runner;
};

TEST_F(ProcessTest, ReportsBothStreamsAndTheExitCode) {
    const ProcessOutcome outcome = run(u"printf out; printf err >&2; exit 3"_s);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->standardOutput.bytes, "out");
    EXPECT_EQ(outcome->standardError.bytes, "err");
    EXPECT_EQ(outcome->exitCode, 3);
    EXPECT_FALSE(outcome->succeeded());
    EXPECT_TRUE(run(u"exit 0"_s)->succeeded());
    EXPECT_EQ(run(u"kill -9 $$"_s)->end, ProcessResult::End::killed);
}

TEST_F(ProcessTest, HasAnEmptyInputAndTheGivenEnvironment) {
    QProcessEnvironment environment;
    environment.insert(u"GREETING"_s, u"hello"_s);
    ProcessRequest request = shell(u"cat; printf \"$GREETING\""_s);
    request.environment = environment;
    EXPECT_EQ(QCoro::waitFor(runner.run(request, {}))->standardOutput.bytes, "hello");
}

TEST_F(ProcessTest, HasAnEmptyFolderOfItsOwnAndNoSignalIgnored) {
    ::signal(SIGXFSZ, SIG_IGN);
    const ProcessOutcome outcome =
        run(u"pwd; ls -A; grep -E 'Sig(Blk|Ign)' /proc/self/status | cut -f 2; touch left"_s);
    ::signal(SIGXFSZ, SIG_DFL);
    ASSERT_TRUE(outcome && outcome->succeeded());
    const QByteArrayList lines = outcome->standardOutput.bytes.trimmed().split('\n');
    ASSERT_EQ(lines.size(), 3) << "the folder has files";
    EXPECT_NE(lines[0], QFile::encodeName(QDir::currentPath()));
    EXPECT_FALSE(QFile::exists(QFile::decodeName(lines[0]))) << "it goes with the child";
    for (const QByteArray& signalSet : lines.sliced(1))
        EXPECT_EQ(signalSet, "0000000000000000");
}

TEST_F(ProcessTest, ReportsWhyItCannotStart) {
    QFile file(folder.filePath(u"no-program"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a program");
    file.close();
    for (const QString& program : {file.fileName(), u"/nonexistent"_s, folder.path()}) {
        const ProcessOutcome outcome = QCoro::waitFor(
            runner.run({.program = program, .arguments = {}, .environment = {}}, {}));
        ASSERT_FALSE(outcome) << program.toStdString();
        EXPECT_FALSE(outcome.error().reason.isEmpty());
    }
}

TEST_F(ProcessTest, KeepsAMebibyteOfOutputAndReadsTheRest) {
    const ProcessOutcome outcome =
        run(u"yes | head -c 20000000; yes | head -c 20000000 >&2; exit 7"_s);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->exitCode, 7) << "a full pipe must not stop it";
    for (const CapturedOutput& output : {outcome->standardOutput, outcome->standardError}) {
        EXPECT_EQ(output.bytes.size(), ProcessRequest::defaultOutputLimit);
        EXPECT_TRUE(output.isTruncated);
    }
}

TEST_F(ProcessTest, TerminatesTheWholeGroupWhenStopped) {
    // The grandchild in a session of its own.
    const QString script =
        u"cd '%1'; setsid sh -c 'trap \"\" TERM; echo $$ > grandchild; while :; do sleep 1; "
        u"done' & trap '' TERM; echo $$ > child; while :; do echo busy; done"_s.arg(folder.path());
    std::stop_source stop;
    std::optional<ProcessOutcome> outcome;
    const auto task = keep(&runner, shell(script), stop.get_token(), &outcome);
    ASSERT_TRUE(runUntil([&] { return pidFrom(u"child"_s) && pidFrom(u"grandchild"_s); }));
    const qint64 child = pidFrom(u"child"_s);
    const qint64 grandchild = pidFrom(u"grandchild"_s);
    stop.request_stop();
    ASSERT_TRUE(runUntil([&] { return outcome.has_value(); }));
    EXPECT_EQ((*outcome)->end, ProcessResult::End::killed);
    EXPECT_FALSE(isAlive(child));
    EXPECT_TRUE(runUntil([&] { return !isAlive(grandchild); }));
}

TEST_F(ProcessTest, KillsWhatAChildHasLeftBehind) {
    const ProcessOutcome outcome =
        run(u"mkfifo gate; sleep 60 & echo $!; setsid sh -c 'sleep 60 & echo $!; echo $$; "
            "echo > gate; exec sleep 60' & read line < gate; exit 3"_s);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->exitCode, 3);
    const QByteArrayList left = outcome->standardOutput.bytes.trimmed().split('\n');
    ASSERT_EQ(left.size(), 3);
    for (const QByteArray& pid : left)
        EXPECT_FALSE(isAlive(pid.toLongLong()));
}

TEST_F(ProcessTest, StartsNothingAfterShutDown) {
    std::optional<ProcessOutcome> outcome;
    const auto task = keep(&runner, shell(u"sleep 1000"_s), {}, &outcome);
    runner.shutDown();
    ASSERT_TRUE(runUntil([&] { return outcome.has_value(); }));
    EXPECT_EQ((*outcome)->end, ProcessResult::End::killed);
    EXPECT_FALSE(run(u"exit 0"_s));
}

TEST_F(ProcessTest, LetsAnInstallationEndByItselfWhileTheNextOneWaits) {
    const auto installation = [this](const QString& script) {
        ProcessRequest request =
            shell(u"(pwd; ls -A) > '%1/place'; cd '%1'; "_s.arg(folder.path()) + script);
        request.lifetime = ProcessRequest::Lifetime::endsByItself;
        request.lockFile = folder.filePath(u"cache/lock"_s);
        return request;
    };
    std::stop_source stop;
    std::optional<ProcessOutcome> first;
    std::optional<ProcessOutcome> second;
    {
        LocalProcessRunner ending;
        const auto task = keep(&ending,
                               installation(u"echo $$ > pid; "
                                            "while [ ! -e go ]; do sleep 0.05; done; touch end"_s),
                               stop.get_token(), &first);
        ASSERT_TRUE(runUntil([&] { return pidFrom(u"pid"_s) > 0; }));
        stop.request_stop();
        ending.shutDown();
        ASSERT_TRUE(runUntil([&] { return first.has_value(); }));
    }
    const auto pid = static_cast<pid_t>(pidFrom(u"pid"_s));
    EXPECT_FALSE(*first);
    EXPECT_EQ(::getsid(pid), pid) << "alive, and in a session of its own";
    QFile place(folder.filePath(u"place"_s));
    ASSERT_TRUE(place.open(QIODevice::ReadOnly));
    const QByteArray workingFolder = place.readAll();
    EXPECT_EQ(workingFolder.count('\n'), 1) << "empty";
    EXPECT_NE(workingFolder.trimmed(), QFile::encodeName(QDir::currentPath()));
    for (const int stream : {0, 1, 2})
        EXPECT_EQ(QFile::symLinkTarget(u"/proc/%1/fd/%2"_s.arg(pid).arg(stream)), u"/dev/null"_s);

    const auto task = keep(&runner, installation(u"[ -e end ] && exit 7"_s), {}, &second);
    EXPECT_FALSE(second) << "waits for the first";
    QFile go(folder.filePath(u"go"_s));
    ASSERT_TRUE(go.open(QIODevice::WriteOnly));
    ASSERT_TRUE(runUntil([&] { return second.has_value(); }));
    ASSERT_TRUE(*second);
    EXPECT_EQ((*second)->exitCode, 7);
}

} // namespace
} // namespace orvane
