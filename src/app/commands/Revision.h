// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// The commit that the program was built from, or "unknown" outside a git checkout. Defined in a
/// file that the build generates, see Revision.cmake.
extern const char* const revision;

} // namespace orvane
