// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/system/Process.h"

#include <QList>
#include <QPromise>

#include <deque>
#include <functional>
#include <memory>

namespace orvane::test {

/// Records every request, and answers it by a function or leaves it open until the test answers.
class FakeProcessRunner final : public ProcessRunner {
public:
    using Answer = std::function<std::optional<ProcessOutcome>(const ProcessRequest&)>;

    QList<ProcessRequest> requests;
    /// nullopt leaves the request open.
    Answer answer = [](const ProcessRequest&) { return std::nullopt; };

    [[nodiscard]] QCoro::Task<ProcessOutcome> run(ProcessRequest request,
                                                  std::stop_token stop) override;

    [[nodiscard]] qsizetype openCount() const { return static_cast<qsizetype>(m_open.size()); }
    /// Answers the oldest open request.
    void finishOldest(ProcessOutcome outcome);

private:
    std::deque<std::shared_ptr<QPromise<ProcessOutcome>>> m_open;
};

[[nodiscard]] ProcessOutcome printed(const QByteArray& output, const QByteArray& error = {},
                                     int exitCode = 0);

} // namespace orvane::test
