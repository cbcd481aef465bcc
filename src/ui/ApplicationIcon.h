// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QIcon;

namespace orvane {

/// Returns Orvane's icon for the tray and the windows. Main thread; needs the application object.
[[nodiscard]] QIcon applicationIcon();

} // namespace orvane
