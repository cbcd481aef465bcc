// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace orvane {

/// How video is drawn; `automatic` depends on the machine.
enum class VideoOutput { automatic, openGL, software };

} // namespace orvane
