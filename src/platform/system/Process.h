// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QCoroTask>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <expected>
#include <memory>
#include <optional>
#include <stop_token>
#include <unordered_set>

namespace orvane {

/// A command to run as a child process: never through a shell, with nothing on its standard input.
struct ProcessRequest {
    enum class Stream { capture, discard };

    /// Absolute path.
    QString program;
    QStringList arguments;
    /// Nothing: the parent's environment as it is.
    std::optional<QProcessEnvironment> environment;
    Stream standardOutput = Stream::capture;
    Stream standardError = Stream::capture;
    /// Bytes of each stream that are kept.
    qsizetype outputLimit = defaultOutputLimit;

    static constexpr qsizetype defaultOutputLimit = 1024 * 1024;
};

/// The beginning of what a child wrote, up to the request's limit; the rest was read and dropped.
struct CapturedOutput {
    QByteArray bytes;
    bool isTruncated = false;

    void append(const QByteArray& more, qsizetype limit);
    /// Nothing when the bytes are no UTF-8.
    [[nodiscard]] std::optional<QString> text() const;
};

struct ProcessResult {
    enum class End { exited, killed };

    End end = End::exited;
    int exitCode = 0;
    CapturedOutput standardOutput;
    CapturedOutput standardError;

    [[nodiscard]] bool succeeded() const { return end == End::exited && exitCode == 0; }
};

/// The child could not be started at all.
struct LaunchFailure {
    QString reason;
};

using ProcessOutcome = std::expected<ProcessResult, LaunchFailure>;

/// Runs child processes. Main thread; nothing blocks it.
class ProcessRunner {
public:
    virtual ~ProcessRunner() = default;

    /// Ends when the child has; there is no time limit. When `stop` is requested, the child and all
    /// it has started are ended, and the result says `killed`.
    [[nodiscard]] virtual QCoro::Task<ProcessOutcome> run(ProcessRequest request,
                                                          std::stop_token stop) = 0;
};

class ChildProcess;

/// Runs them on this machine, each as the leader of a process group of its own, so that what a tool
/// starts ends with it. A child also gets a kill signal if this program dies.
class LocalProcessRunner final : public ProcessRunner {
public:
    LocalProcessRunner();
    ~LocalProcessRunner() override;

    [[nodiscard]] QCoro::Task<ProcessOutcome> run(ProcessRequest request,
                                                  std::stop_token stop) override;

    /// Ends every running child; from now on nothing can be started.
    void shutDown();

private:
    std::unordered_set<ChildProcess*> m_running;
    bool m_isShutDown = false;
};

} // namespace orvane
