// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/ProcessRequest.h"

#include <QCoroTask>

#include <stop_token>
#include <unordered_set>

namespace orvane {

/// Runs child processes. Main thread, which it never blocks.
class ProcessRunner {
public:
    virtual ~ProcessRunner() = default;

    /// Completes when the child has exited; there is no timeout. When `stop` is requested, the
    /// child and its descendants are terminated and the result is `killed`, unless the child ends
    /// by itself.
    [[nodiscard]] virtual QCoro::Task<ProcessOutcome> run(ProcessRequest request,
                                                          std::stop_token stop) = 0;
};

class ChildProcess;
class IndependentChild;

/// Runs each child in an empty folder and a process group of its own, under a guard that kills
/// everything the child has started when it has ended, is stopped, or this program dies; the guard
/// is the program `orvane-guard`. A child that ends by itself is left alone by all of that but the
/// folder.
class LocalProcessRunner final : public ProcessRunner {
public:
    LocalProcessRunner();
    ~LocalProcessRunner() override;

    [[nodiscard]] QCoro::Task<ProcessOutcome> run(ProcessRequest request,
                                                  std::stop_token stop) override;

    /// Terminates all children but those that end by themselves, whose calls complete at once with
    /// a failure, and refuses to start others.
    void shutDown();

private:
    [[nodiscard]] QCoro::Task<ProcessOutcome> runIndependently(ProcessRequest request);

    std::unordered_set<ChildProcess*> m_running;
    std::unordered_set<IndependentChild*> m_independent;
    bool m_isShutDown = false;
};

} // namespace orvane
