// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace orvane {

/// Returns the path of a CA bundle with one certificate that signs nothing; empty on any error.
/// mpv, told not to verify certificates, still reads the system's whole bundle for each connection,
/// which takes some 10 ms and 4 MB. The file lives in the memory of this process and is the same
/// for every call. Any thread.
[[nodiscard]] const std::string& emptyCaBundlePath();

} // namespace orvane
