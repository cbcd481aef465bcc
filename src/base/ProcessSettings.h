// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/types.h>

namespace orvane {

/// What holds for the whole process, set once at the start of `main`, before other threads.
namespace ProcessSettings {

/// Opens the standard streams that are closed, so that no other file gets their numbers and then
/// what is meant for them. Has writing to a pipe without a reader, or beyond a limit of a file's
/// size, fail instead of ending the program; children do not inherit that. What the program writes
/// is readable for the user alone, and a crash leaves no image of its memory, which holds the
/// addresses of streams.
void apply();

/// Returns the mask for new files that the user has set; that of the process if it has not been
/// changed.
[[nodiscard]] mode_t usersMask();

/// While it lives, programs that are started get the user's own settings in place of these: for
/// those that stay open, such as a browser. Main thread.
class UsersOwn {
public:
    UsersOwn();
    ~UsersOwn();
    UsersOwn(const UsersOwn&) = delete;
    UsersOwn& operator=(const UsersOwn&) = delete;
};

} // namespace ProcessSettings

} // namespace orvane
