// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <QScreen>

/// The X server's pixels, of which Qt tells only rounded to whole points, which is not exact at
/// scale factors such as 1.5. The corner of a screen has the same coordinates in both. Pure
/// functions of the screens; main thread.
namespace orvane {

/// Returns an area in pixels, at the scale of the screen that shows most of it.
[[nodiscard]] QRectF pixelsOf(const QRectF& area);

/// Returns an area of this screen in points.
[[nodiscard]] QRectF pointsOn(const QScreen& screen, const QRectF& pixels);

/// The same for the screen that shows most of the area.
[[nodiscard]] QRectF pointsOf(const QRectF& pixels);

} // namespace orvane
