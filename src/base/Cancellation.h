// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stop_token>
#include <utility>

namespace orvane {

/// Cancels one operation at a time: an operation gets a stop token and is cancelled when the next
/// one starts, on request, or when this object is destroyed. A member of the class that starts the
/// operation; not shared between threads.
class Cancellation {
public:
    Cancellation() = default;
    ~Cancellation() { cancel(); }
    Cancellation(const Cancellation&) = delete;
    Cancellation& operator=(const Cancellation&) = delete;

    /// Cancels the running operation, if any, and returns the token for the next one.
    [[nodiscard]] std::stop_token restart() {
        cancel();
        m_source = std::stop_source();
        return m_source.get_token();
    }

    /// Cancels the running operation, if any.
    void cancel() {
        // Moved out first: a stop callback may start the next operation.
        std::exchange(m_source, std::stop_source(std::nostopstate)).request_stop();
    }

    /// Whether an operation was started and has neither been cancelled nor finished.
    [[nodiscard]] bool isActive() const { return m_source.stop_possible(); }

    /// Marks the operation as finished without cancelling it.
    void finish() { m_source = std::stop_source(std::nostopstate); }

private:
    std::stop_source m_source{std::nostopstate};
};

} // namespace orvane
