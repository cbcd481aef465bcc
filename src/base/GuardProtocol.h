// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <signal.h>

namespace orvane {

/// What the program and `orvane-guard`, through which it starts each tool, agree on. Its arguments
/// are the number of a descriptor, the tool's working folder, and the tool with its own arguments.
/// It is started with all signals blocked.
namespace GuardProtocol {

inline constexpr const char* executable = "orvane-guard";

/// Has the guard kill everything that the tool has started, and end.
inline constexpr int killSignal = SIGUSR1;

/// If the tool cannot be started, the guard writes the error's number to the descriptor.
using Report = int;

} // namespace GuardProtocol

} // namespace orvane
