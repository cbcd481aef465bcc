// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// How the picture is drawn; `automatic` asks the machine.
enum class VideoOutput { automatic, openGL, software };

} // namespace orvane
