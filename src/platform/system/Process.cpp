// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/Process.h"

#include "base/Logging.h"
#include "platform/system/IndependentChild.h"

#include <QCoroFuture>
#include <QElapsedTimer>
#include <QProcess>
#include <QPromise>
#include <QTimer>

#include <linux/ioprio.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Long enough for a tool to remove its temporary files, short enough not to delay quitting.
constexpr std::chrono::milliseconds terminationGrace{200};

void becomeGroupLeader() {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

/// For what nobody waits for. A kernel that refuses either changes nothing else.
void becomeIdle() {
    becomeGroupLeader();
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
    /// Sends SIGTERM to the whole group, and SIGKILL after a grace period.
    void end();

private:
    void drain();
    void signalGroup(int number) const;
    void finish(ProcessOutcome outcome);
    /// Without the arguments, which may hold tokens; the callers log what is safe.
    void log(const ProcessOutcome& outcome) const;

    const bool m_capturesOutput;
    const bool m_capturesError;
    const qsizetype m_outputLimit;
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
      m_outputLimit(request.outputLimit) {
    m_process.setProgram(request.program);
    m_process.setArguments(request.arguments);
    if (request.environment)
        m_process.setProcessEnvironment(*request.environment);
    m_process.setStandardInputFile(QProcess::nullDevice());
    if (!m_capturesOutput)
        m_process.setStandardOutputFile(QProcess::nullDevice());
    if (!m_capturesError)
        m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.setChildProcessModifier(
        request.priority == ProcessRequest::Priority::idle ? becomeIdle : becomeGroupLeader);
    m_graceTimer.setSingleShot(true);
    QObject::connect(&m_graceTimer, &QTimer::timeout, &m_process, [this] { signalGroup(SIGKILL); });
}

QFuture<ProcessOutcome> ChildProcess::start() {
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, [this] { drain(); });
    QObject::connect(&m_process, &QProcess::readyReadStandardError, [this] { drain(); });
    QObject::connect(&m_process, &QProcess::errorOccurred, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finish(std::unexpected(LaunchFailure{m_process.errorString()}));
    });
    QObject::connect(&m_process, &QProcess::finished,
                     [this](int code, QProcess::ExitStatus status) {
                         drain();
                         m_result.exitCode = code;
                         m_result.end = status == QProcess::NormalExit ? ProcessResult::End::exited
                                                                       : ProcessResult::End::killed;
                         // Processes that the child has left in its group must not outlive it.
                         signalGroup(SIGKILL);
                         finish(std::move(m_result));
                     });
    m_promise.start();
    m_duration.start();
    m_process.start(QIODevice::ReadOnly);
    m_groupId = m_process.processId();
    if (m_groupId > 0)
        qCInfo(logProcess) << m_process.program() << m_groupId << "started";
    return m_promise.future();
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
    const QString& program = m_process.program();
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
