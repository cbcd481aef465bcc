// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/Process.h"

#include "base/FileDescriptor.h"
#include "base/GuardProtocol.h"
#include "base/Logging.h"
#include "base/ProcessSettings.h"
#include "platform/system/IndependentChild.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QPromise>
#include <QTemporaryDir>
#include <QTimer>

#include <fcntl.h>
#include <linux/ioprio.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Long enough for a tool to remove its temporary files, short enough not to delay quitting.
constexpr std::chrono::milliseconds terminationGrace{200};

/// Blocks all signals while it lives, for a fork: a signal that meets the child before its own
/// settings would call this program's handlers.
class SignalBlock {
public:
    SignalBlock() {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    SignalBlock(const SignalBlock&) = delete;
    SignalBlock& operator=(const SignalBlock&) = delete;
    ~SignalBlock() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before{};
};

/// Returns the guard of the build or of the installation; an empty text if it is missing.
QString findGuard() {
    const QString name = QString::fromLatin1(GuardProtocol::executable);
    const QString here = QCoreApplication::applicationDirPath();
    for (const QString& folder : {here, here + u"/../libexec/orvane"_s}) {
        const QFileInfo file(folder + u'/' + name);
        if (file.isFile() && file.isExecutable())
            return file.canonicalFilePath();
    }
    qWarning("%s is missing, so what yt-dlp has started may outlive Orvane",
             GuardProtocol::executable);
    return {};
}

/// Runs in the child, in the memory of this program.
void becomeGuard(pid_t program, mode_t mask, int report) {
    for (int number = 1; number < NSIG; ++number)
        ::signal(number, SIG_DFL);
    ::setpgid(0, 0);
    ::umask(mask);
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    ::prctl(PR_SET_PDEATHSIG, GuardProtocol::killSignal);
    // Has it gone before this took effect?
    if (::getppid() != program)
        ::_exit(1);
    ::fcntl(report, F_SETFD, 0);
}

/// The same without a guard.
void becomeGroupLeader(mode_t mask) {
    for (int number = 1; number < NSIG; ++number)
        ::signal(number, SIG_DFL);
    ::setpgid(0, 0);
    ::umask(mask);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// For what nobody waits for. A kernel that refuses either changes nothing else.
void becomeIdle() {
    const sched_param noPriority{};
    ::sched_setscheduler(0, SCHED_IDLE, &noPriority);
    ::syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, 0, IOPRIO_PRIO_VALUE(IOPRIO_CLASS_IDLE, 0));
}

} // namespace

/// A running child and the promise of its outcome. Lives in the coroutine frame of `run`.
class ChildProcess {
public:
    explicit ChildProcess(const ProcessRequest& request);

    QFuture<ProcessOutcome> start();
    /// Sends SIGTERM to the whole group, and has everything killed after a grace period.
    void end();

private:
    void openReport();
    void setUp(const ProcessRequest& request);
    /// The error that kept the guard from starting the tool.
    [[nodiscard]] std::optional<int> guardsReport() const;
    void exited(int code, QProcess::ExitStatus status);
    void drain();
    void signalGroup(int number) const;
    void finish(ProcessOutcome outcome);
    /// Without the arguments, which may hold tokens; the callers log what is safe.
    void log(const ProcessOutcome& outcome) const;

    const bool m_capturesOutput;
    const bool m_capturesError;
    const qsizetype m_outputLimit;
    /// Python looks for modules in the folder that it is started in, so that is an empty one.
    QTemporaryDir m_folder;
    const QString m_program;
    bool m_hasGuard = false;
    FileDescriptor m_report;
    FileDescriptor m_guardsEnd;
    QProcess m_process;
    QTimer m_graceTimer;
    QElapsedTimer m_duration;
    QPromise<ProcessOutcome> m_promise;
    ProcessResult m_result;
    qint64 m_groupId = 0;
    bool m_isFinished = false;
};

ChildProcess::ChildProcess(const ProcessRequest& request)
    : m_capturesOutput(request.standardOutput == ProcessRequest::Stream::capture),
      m_capturesError(request.standardError == ProcessRequest::Stream::capture),
      m_outputLimit(request.outputLimit),
      m_program(request.program) {
    if (request.environment)
        m_process.setProcessEnvironment(*request.environment);
    m_process.setStandardInputFile(QProcess::nullDevice());
    if (!m_capturesOutput)
        m_process.setStandardOutputFile(QProcess::nullDevice());
    if (!m_capturesError)
        m_process.setStandardErrorFile(QProcess::nullDevice());
    setUp(request);
    m_graceTimer.setSingleShot(true);
    QObject::connect(&m_graceTimer, &QTimer::timeout, &m_process, [this] {
        if (m_hasGuard)
            ::kill(static_cast<pid_t>(m_groupId), GuardProtocol::killSignal);
        else
            signalGroup(SIGKILL);
    });
}

void ChildProcess::setUp(const ProcessRequest& request) {
    static const QString guard = findGuard();
    const QString folder = m_folder.isValid() ? m_folder.path() : u"/"_s;
    const mode_t mask = ProcessSettings::usersMask();
    const bool isIdle = request.priority == ProcessRequest::Priority::idle;
    m_process.setWorkingDirectory(folder);
    openReport();
    m_hasGuard = !guard.isEmpty() && m_guardsEnd.isOpen();
    if (!m_hasGuard) {
        m_process.setProgram(request.program);
        m_process.setArguments(request.arguments);
        m_process.setChildProcessModifier([mask, isIdle] {
            becomeGroupLeader(mask);
            if (isIdle)
                becomeIdle();
        });
        return;
    }
    const int report = m_guardsEnd.get();
    m_process.setProgram(guard);
    m_process.setArguments(QStringList{QString::number(report), folder, request.program} +
                           request.arguments);
    m_process.setChildProcessModifier([program = ::getpid(), mask, report, isIdle] {
        becomeGuard(program, mask, report);
        if (isIdle)
            becomeIdle();
    });
}

void ChildProcess::openReport() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_report = FileDescriptor(ends[0]);
    m_guardsEnd = FileDescriptor(ends[1]);
}

std::optional<int> ChildProcess::guardsReport() const {
    GuardProtocol::Report error = 0;
    const bool isThere = ::read(m_report.get(), &error, sizeof error) == sizeof error;
    return isThere ? std::optional(error) : std::nullopt;
}

QFuture<ProcessOutcome> ChildProcess::start() {
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, [this] { drain(); });
    QObject::connect(&m_process, &QProcess::readyReadStandardError, [this] { drain(); });
    QObject::connect(&m_process, &QProcess::errorOccurred, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(std::unexpected(LaunchFailure{m_process.errorString()}));
    });
    QObject::connect(&m_process, &QProcess::finished,
                     [this](int code, QProcess::ExitStatus status) { exited(code, status); });
    m_promise.start();
    m_duration.start();
    {
        const SignalBlock untilItHasItsOwn;
        m_process.start(QIODevice::ReadOnly);
    }
    m_guardsEnd.reset();
    m_groupId = m_process.processId();
    if (m_groupId > 0)
        qCInfo(logProcess) << m_program << m_groupId << "started";
    return m_promise.future();
}

void ChildProcess::exited(int code, QProcess::ExitStatus status) {
    drain();
    // The guard has left nothing behind, unless it was killed itself.
    signalGroup(SIGKILL);
    if (const std::optional<int> error = guardsReport())
        return finish(std::unexpected(LaunchFailure{qt_error_string(*error)}));
    m_result.exitCode = code;
    m_result.end =
        status == QProcess::NormalExit ? ProcessResult::End::exited : ProcessResult::End::killed;
    finish(std::move(m_result));
}

void ChildProcess::end() {
    signalGroup(SIGTERM);
    m_graceTimer.start(terminationGrace);
}

void ChildProcess::drain() {
    if (m_capturesOutput)
        m_result.standardOutput.append(m_process.readAllStandardOutput(), m_outputLimit);
    if (m_capturesError)
        m_result.standardError.append(m_process.readAllStandardError(), m_outputLimit);
}

void ChildProcess::signalGroup(int number) const {
    if (m_groupId <= 0)
        return;
    // The group does not exist before the child has called setpgid.
    if (::kill(static_cast<pid_t>(-m_groupId), number) != 0 &&
        m_process.state() != QProcess::NotRunning)
        ::kill(static_cast<pid_t>(m_groupId), number);
}

void ChildProcess::finish(ProcessOutcome outcome) {
    if (m_isFinished)
        return;
    m_isFinished = true;
    log(outcome);
    m_promise.addResult(std::move(outcome));
    m_promise.finish();
}

void ChildProcess::log(const ProcessOutcome& outcome) const {
    const QString& program = m_program;
    if (!outcome)
        qCWarning(logProcess) << program << "not started:" << outcome.error().reason;
    else if (outcome->end == ProcessResult::End::killed)
        qCInfo(logProcess) << program << m_groupId << "killed after" << m_duration.elapsed()
                           << "ms";
    else
        qCInfo(logProcess) << program << m_groupId << "exited with" << outcome->exitCode << "after"
                           << m_duration.elapsed() << "ms";
}

LocalProcessRunner::LocalProcessRunner() = default;

LocalProcessRunner::~LocalProcessRunner() = default;

QCoro::Task<ProcessOutcome> LocalProcessRunner::run(ProcessRequest request, std::stop_token stop) {
    if (m_isShutDown || stop.stop_requested())
        co_return std::unexpected(LaunchFailure{u"the program is ending"_s});
    if (request.lifetime == ProcessRequest::Lifetime::endsByItself) {
        ProcessOutcome outcome = co_await runIndependently(std::move(request));
        co_return outcome;
    }
    ChildProcess child(request);
    const QFuture<ProcessOutcome> future = child.start();
    m_running.insert(&child);
    const std::stop_callback onStop(stop, [&child] { child.end(); });
    ProcessOutcome outcome = co_await future;
    m_running.erase(&child);
    co_return outcome;
}

QCoro::Task<ProcessOutcome> LocalProcessRunner::runIndependently(ProcessRequest request) {
    IndependentChild child(std::move(request));
    const QFuture<ProcessOutcome> future = child.start();
    m_independent.insert(&child);
    ProcessOutcome outcome = co_await future;
    m_independent.erase(&child);
    co_return outcome;
}

void LocalProcessRunner::shutDown() {
    m_isShutDown = true;
    for (IndependentChild* child : m_independent)
        child->abandon();
    for (ChildProcess* child : m_running)
        child->end();
}

} // namespace orvane
