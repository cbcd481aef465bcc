// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace orvane {

/// Limits malloc to one arena. Every player has threads of its own, and with an arena for each
/// thread the memory that a player has freed would stay with the process. To be called once, before
/// other threads are started.
void limitMemoryArenas();

/// Returns freed memory to the system. Any thread; takes a few milliseconds.
void returnFreeMemory();

/// Returns how many bytes of memory the process has in use; 0 if that is unknown. Any thread.
[[nodiscard]] std::int64_t usedMemory();

/// Detects that the process grows quickly, by a limit within a short time. What it grows by slowly
/// does not count. A plain value; any thread.
class MemoryGrowth {
public:
    /// How much of the growth is forgotten with each measurement.
    static constexpr std::int64_t forgotten = std::int64_t{1} << 20U;

    MemoryGrowth(std::int64_t used, std::int64_t limit) : m_base(used), m_limit(limit) {}

    /// Takes the next of regular measurements; returns whether the growth has reached the limit.
    [[nodiscard]] bool hasReachedLimit(std::int64_t used);

private:
    std::int64_t m_base;
    std::int64_t m_limit;
};

} // namespace orvane
