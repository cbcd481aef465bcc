// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QRectF>
#include <QSize>

#include <optional>

namespace orvane {

/// Where the player window goes when nothing is known: 480 × 314 in the lower right corner of the
/// usable area, 20 points from both edges. Points, y downwards.
[[nodiscard]] QRectF defaultPlayerFrame(const QRectF& usableArea);

/// Points.
inline constexpr QSize smallestPlayerSize(320, 180);

/// Where the player window goes at first: the saved frame as it is, if it can be reached there and
/// is not too small; else moved and grown so that it can be. Without a saved frame, or with one
/// without a size, the default one. `usableAreas` holds the usable area of every screen, the first
/// screen's first; it is not empty.
[[nodiscard]] QRectF initialPlayerFrame(const std::optional<QRectF>& saved,
                                        const QList<QRectF>& usableAreas);

/// `frame` with another size. The corner that is nearest to a corner of its screen stays where it
/// is, so that a window in a corner stays there; then it is moved as far as its being whole on that
/// screen asks for.
[[nodiscard]] QRectF resizedPlayerFrame(const QRectF& frame, const QSizeF& size,
                                        const QList<QRectF>& usableAreas);

/// Where a window goes when the screens have changed: it stays where all of it is on them; else it
/// is moved into the nearest usable area, and shrunk to it where it must be.
[[nodiscard]] QRectF playerFrameInView(const QRectF& frame, const QList<QRectF>& usableAreas);

/// The edges of a window of this size by which a press at `position` resizes it: a band of 6 points
/// along the inside, whose ends are the corners. None elsewhere.
[[nodiscard]] Qt::Edges edgesAt(const QPointF& position, const QSizeF& size);

} // namespace orvane
