// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QRectF>

#include <optional>

namespace orvane {

/// Returns where on the edge of the usable area the end of the panel is, which has the tray:
/// the panel is the widest strip of the screen that is not usable. nullopt if there is none. Points
/// in desktop coordinates, y downwards. A pure function.
[[nodiscard]] std::optional<QPoint> panelEnd(const QRectF& screen, const QRectF& usable);

} // namespace orvane
