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

/// A command to run as a child process: without a shell, with an empty standard input.
struct ProcessRequest {
    enum class Stream { capture, discard };

    /// Absolute path.
    QString program;
    QStringList arguments;
    /// nullopt: the environment of the parent.
    std::optional<QProcessEnvironment> environment;
    Stream standardOutput = Stream::capture;
    Stream standardError = Stream::capture;
    /// Maximum number of bytes to keep of each stream.
    qsizetype outputLimit = defaultOutputLimit;

    static constexpr qsizetype defaultOutputLimit = 1024 * 1024;
};

/// The output of a child up to the request's limit; the rest was read and discarded.
struct CapturedOutput {
    QByteArray bytes;
    bool isTruncated = false;

    void append(const QByteArray& more, qsizetype limit);
    /// Returns nullopt when the bytes are not valid UTF-8.
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

/// The child could not be started.
struct LaunchFailure {
    QString reason;
};

using ProcessOutcome = std::expected<ProcessResult, LaunchFailure>;

/// Runs child processes. Main thread, which it never blocks.
class ProcessRunner {
public:
    virtual ~ProcessRunner() = default;

    /// Completes when the child has exited; there is no timeout. When `stop` is requested, the
    /// child and its descendants are terminated and the result is `killed`.
    [[nodiscard]] virtual QCoro::Task<ProcessOutcome> run(ProcessRequest request,
                                                          std::stop_token stop) = 0;
};

class ChildProcess;

/// Runs each child as the leader of a process group of its own, so that what it has started can be
/// terminated with it. The kernel kills a child when this program dies.
class LocalProcessRunner final : public ProcessRunner {
public:
    LocalProcessRunner();
    ~LocalProcessRunner() override;

    [[nodiscard]] QCoro::Task<ProcessOutcome> run(ProcessRequest request,
                                                  std::stop_token stop) override;

    /// Terminates all children and refuses to start others.
    void shutDown();

private:
    std::unordered_set<ChildProcess*> m_running;
    bool m_isShutDown = false;
};

} // namespace orvane
