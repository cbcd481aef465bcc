// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stop_token>
#include <utility>

namespace orvane {

/// Owns the right to cancel one piece of work at a time: the work gets a token, and is cancelled
/// when the next one begins, on request, or when this object goes. A member of whoever starts the
/// work; not shared between threads.
class Cancellation {
public:
    Cancellation() = default;
    ~Cancellation() { cancel(); }
    Cancellation(const Cancellation&) = delete;
    Cancellation& operator=(const Cancellation&) = delete;

    /// Cancels what is running and returns the token for its successor.
    [[nodiscard]] std::stop_token restart() {
        cancel();
        m_source = std::stop_source();
        return m_source.get_token();
    }

    /// Cancels what is running, if anything.
    void cancel() {
        // Moved out first: a stop callback may start the successor.
        std::exchange(m_source, std::stop_source(std::nostopstate)).request_stop();
    }

    /// Whether work was started and neither cancelled nor reported as finished.
    [[nodiscard]] bool isActive() const { return m_source.stop_possible(); }

    /// The work has ended by itself.
    void finish() { m_source = std::stop_source(std::nostopstate); }

private:
    std::stop_source m_source{std::nostopstate};
};

} // namespace orvane
