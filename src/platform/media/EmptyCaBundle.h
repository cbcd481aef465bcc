// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane {

/// Where a file lies that names a single certificate authority, which signs nothing. For a library
/// that is told not to check certificates and yet reads those of all the system's authorities for
/// every connection: that takes some ten milliseconds and four megabytes each time. The file is
/// one of this process and takes no room on the disk; the same for every call, on any thread.
/// Empty where there is no such file.
[[nodiscard]] const std::string& emptyCaBundlePath();

} // namespace orvane
