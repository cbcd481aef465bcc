// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/tray/PanelEnd.h"

#include <algorithm>
#include <array>

namespace orvane {

std::optional<QPoint> panelEnd(const QRectF& screen, const QRectF& usable) {
    struct Strip {
        double width;
        QPointF end;
    };
    const std::array strips{
        Strip{usable.top() - screen.top(), usable.topRight()},
        Strip{screen.bottom() - usable.bottom(), usable.bottomRight()},
        Strip{usable.left() - screen.left(), usable.bottomLeft()},
        Strip{screen.right() - usable.right(), usable.bottomRight()},
    };
    const Strip& panel = *std::ranges::max_element(strips, {}, &Strip::width);
    return panel.width > 0 ? std::optional(panel.end.toPoint()) : std::nullopt;
}

} // namespace orvane
