// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <expected>
#include <optional>

namespace orvane {

/// A command to run as a child process: without a shell, with an empty standard input.
struct ProcessRequest {
    enum class Stream { capture, discard };
    /// Whether the child is ended with the program and by a stop, or by nothing: an installation
    /// that is cut off leaves a broken tool behind.
    enum class Lifetime { endsWithProgram, endsByItself };
    /// An idle child gets the processor and the disks only when nobody else wants them.
    enum class Priority { normal, idle };

    /// Absolute path.
    QString program;
    QStringList arguments;
    /// nullopt: the environment of the parent.
    std::optional<QProcessEnvironment> environment;
    Stream standardOutput = Stream::capture;
    Stream standardError = Stream::capture;
    /// Maximum number of bytes to keep of each stream.
    qsizetype outputLimit = defaultOutputLimit;
    Priority priority = Priority::normal;
    /// A child that ends by itself has no output, and runs in a session of its own.
    Lifetime lifetime = Lifetime::endsWithProgram;
    /// For a child that ends by itself: a file whose lock it waits for and holds while it lives, so
    /// that no two run at the same time, even if the program has ended meanwhile. Empty: none.
    QString lockFile;

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

} // namespace orvane
