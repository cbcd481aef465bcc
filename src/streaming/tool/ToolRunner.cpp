// SPDX-License-Identifier: GPL-3.0-or-later
#include "streaming/tool/ToolRunner.h"

#include "base/Logging.h"
#include "platform/system/SearchPath.h"

#include <QElapsedTimer>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

QString describe(const ProcessOutcome& outcome) {
    if (!outcome)
        return u"could not be started: "_s + outcome.error().reason;
    if (outcome->end == ProcessResult::End::killed)
        return u"was killed or crashed"_s;
    return u"exited with status %1"_s.arg(outcome->exitCode);
}

void logOutcome(const QString& program, const ProcessOutcome& outcome, qint64 milliseconds) {
    qCInfo(logYtDlp).noquote() << program << describe(outcome) << "after" << milliseconds << "ms";
    if (!outcome || !logYtDlp().isWarningEnabled())
        return;
    for (const QByteArray& line : outcome->standardError.bytes.split('\n')) {
        if (!line.trimmed().isEmpty())
            qCWarning(logYtDlp).noquote() << withoutSecrets(QString::fromUtf8(line.trimmed()));
    }
}

} // namespace

std::optional<QProcessEnvironment> variables(ToolEnvironment environment) {
    if (environment == ToolEnvironment::inherited)
        return std::nullopt;
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    result.insert(u"PATH"_s, u"/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/sbin:"_s +
                                 searchPathOf(result));
    return result;
}

ToolRunner::ToolRunner(HostFileSystem host, ProcessRunner& processes)
    : m_host(std::move(host)), m_processes(processes) {}

QCoro::Task<ProcessOutcome> ToolRunner::run(ProcessRequest request, std::stop_token stop) {
    qCInfo(logYtDlp).noquote() << "running" << request.program
                               << withoutSecrets(request.arguments.join(u' '));
    QElapsedTimer timer;
    timer.start();
    ProcessOutcome outcome = co_await m_processes.run(request, stop);
    logOutcome(request.program, outcome, timer.elapsed());
    co_return outcome;
}

QCoro::Task<std::optional<QString>> ToolRunner::output(QString program, QStringList arguments,
                                                       ToolEnvironment environment) {
    const ProcessRequest request{.program = program,
                                 .arguments = arguments,
                                 .environment = variables(environment),
                                 .standardError = ProcessRequest::Stream::discard};
    const ProcessOutcome outcome = co_await run(request, std::stop_token());
    if (!outcome)
        co_return std::nullopt;
    std::optional<QString> text = outcome->standardOutput.text();
    co_return text;
}

QCoro::Task<bool> ToolRunner::succeeds(QString program, QStringList arguments,
                                       ToolEnvironment environment) {
    const ProcessRequest request{.program = program,
                                 .arguments = arguments,
                                 .environment = variables(environment),
                                 .standardOutput = ProcessRequest::Stream::discard,
                                 .standardError = ProcessRequest::Stream::discard};
    const ProcessOutcome outcome = co_await run(request, std::stop_token());
    co_return outcome && outcome->succeeded();
}

QCoro::Task<bool> ToolRunner::install(QString program, QStringList arguments,
                                      std::optional<QProcessEnvironment> environment) {
    const ProcessRequest request{.program = program,
                                 .arguments = arguments,
                                 .environment = environment,
                                 .standardOutput = ProcessRequest::Stream::discard,
                                 .standardError = ProcessRequest::Stream::discard,
                                 .lifetime = ProcessRequest::Lifetime::endsByItself,
                                 .lockFile = m_host.home() + u"/.cache/orvane/installation.lock"_s};
    const ProcessOutcome outcome = co_await run(request, std::stop_token());
    co_return outcome && outcome->succeeded();
}

std::optional<QString> ToolRunner::firstExisting(const QStringList& paths) const {
    for (const QString& path : paths) {
        QString real = path.startsWith(u'~') ? QString(m_host.home() + path.sliced(1))
                                             : m_host.systemPath(path);
        if (HostFileSystem::exists(real))
            return real;
    }
    return std::nullopt;
}

} // namespace orvane
