// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// Keeps a long-running program from spreading over ever more memory. Every player brings threads
/// of its own, and the C library gives threads separate arenas that keep what their player has
/// freed. Called once, before there are other threads.
void limitMemoryArenas();

/// Gives memory that was freed back to the system. Any thread; takes some milliseconds.
void returnFreeMemory();

} // namespace orvane
