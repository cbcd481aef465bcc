// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// Limits malloc to one arena. Every player has threads of its own, and with an arena for each
/// thread the memory that a player has freed would stay with the process. To be called once, before
/// other threads are started.
void limitMemoryArenas();

/// Returns freed memory to the system. Any thread; takes a few milliseconds.
void returnFreeMemory();

} // namespace orvane
