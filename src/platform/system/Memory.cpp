// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/Memory.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

namespace orvane {

void limitMemoryArenas() {
    mallopt(M_ARENA_MAX, 1);
}

void returnFreeMemory() {
    malloc_trim(0);
}

std::int64_t usedMemory() {
    // All pages, then those in use.
    std::int64_t all = 0;
    std::int64_t used = 0;
    std::ifstream file("/proc/self/statm");
    return file >> all >> used ? used * sysconf(_SC_PAGESIZE) : 0;
}

bool MemoryGrowth::hasReachedLimit(std::int64_t used) {
    m_base = std::min(used, m_base + forgotten);
    return used - m_base >= m_limit;
}

} // namespace orvane
