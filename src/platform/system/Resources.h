// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

/// What the system grants to this process. Main thread.
namespace orvane::Resources {

/// Asks the system for as many open files as the program may need. Returns what is missing for it
/// to run, as a text for the user, or nullopt: libmpv and Qt crash or wait for ever where a thread
/// cannot be started. Takes a few milliseconds at most.
[[nodiscard]] std::optional<QString> missing();

} // namespace orvane::Resources
