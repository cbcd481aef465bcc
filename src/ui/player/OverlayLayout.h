// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QSize>

namespace orvane {

/// Where the parts of the overlay are, in points from its upper left corner. Of the spinner and the
/// button with its countdown only one is shown.
struct OverlayLayout {
    QRect spinner;
    QRect message;
    QRect retry;
    QRect countdown;
    /// Whether nothing that is shown lies under the control bar or outside.
    bool fits = true;
};

/// What the overlay shows below or above its message.
enum class OverlayContent { spinner, retry };

/// Sizes in points.
struct OverlayParts {
    OverlayContent content = OverlayContent::spinner;
    /// Of all lines of the message.
    int messageHeight = 0;
    /// What the button and the countdown need.
    QSize retry;
    int countdownHeight = 0;
};

/// Places the parts about the middle of the overlay, or about the middle of what is above the
/// control bar if they would meet the bar. Parts do not overlap. A pure function; any thread.
[[nodiscard]] OverlayLayout overlayLayout(QSize overlay, const OverlayParts& parts);

} // namespace orvane
