// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QIcon;

namespace orvane {

/// Orvane's icon, for the tray and for windows. Main thread, once there is an application object.
[[nodiscard]] QIcon applicationIcon();

} // namespace orvane
