// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FakeProcessRunner.h"

#include <QCoroFuture>

namespace orvane::test {

QCoro::Task<ProcessOutcome> FakeProcessRunner::run(ProcessRequest request, std::stop_token stop) {
    requests.append(request);
    const std::optional<ProcessOutcome> scripted = answer(request);
    if (scripted)
        co_return ProcessOutcome(*scripted);
    auto promise = std::make_shared<QPromise<ProcessOutcome>>();
    promise->start();
    m_open.push_back(promise);
    const std::stop_callback onStop(stop, [promise] {
        promise->addResult(ProcessResult{.end = ProcessResult::End::killed});
        promise->finish();
    });
    const QFuture<ProcessOutcome> future = promise->future();
    ProcessOutcome outcome = co_await future;
    std::erase(m_open, promise);
    co_return outcome;
}

void FakeProcessRunner::finishOldest(ProcessOutcome outcome) {
    const auto promise = m_open.front();
    m_open.pop_front();
    promise->addResult(std::move(outcome));
    promise->finish();
}

ProcessOutcome printed(const QByteArray& output, const QByteArray& error, int exitCode) {
    return ProcessResult{.exitCode = exitCode,
                         .standardOutput = {.bytes = output},
                         .standardError = {.bytes = error}};
}

} // namespace orvane::test
