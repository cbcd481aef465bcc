// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/system/Memory.h"

#include <malloc.h>

namespace orvane {

void limitMemoryArenas() {
    mallopt(M_ARENA_MAX, 1);
}

void returnFreeMemory() {
    malloc_trim(0);
}

} // namespace orvane
