// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QRectF>
#include <QSize>

#include <optional>

namespace orvane {

/// Returns the default frame of the player window: 480 × 314 in the lower right corner of the
/// usable area, 20 points from both edges. Points, y downwards.
[[nodiscard]] QRectF defaultPlayerFrame(const QRectF& usableArea);

/// Points.
inline constexpr QSize smallestPlayerSize(320, 180);

/// Returns the first frame of the player window: the saved frame if the user can reach it, it is
/// large enough, and its screen's usable area is as large, else the same moved and grown, or shrunk
/// to 16:9, as needed. Returns the default frame if `saved` is missing or empty. `usableAreas` has
/// the usable area of every screen, primary first; not empty.
[[nodiscard]] QRectF initialPlayerFrame(const std::optional<QRectF>& saved,
                                        const QList<QRectF>& usableAreas);

/// Returns `frame` with another size. The corner nearest to a corner of the screen stays in place,
/// so that a window in a corner stays there; then the frame is moved, and shrunk to 16:9 if
/// necessary, to be completely on the screen.
[[nodiscard]] QRectF resizedPlayerFrame(const QRectF& frame, const QSizeF& size,
                                        const QList<QRectF>& usableAreas);

/// Returns the frame after a change of screens: unchanged if it is completely visible and not
/// larger than the nearest usable area, else moved into that and shrunk to 16:9 if necessary.
[[nodiscard]] QRectF playerFrameInView(const QRectF& frame, const QList<QRectF>& usableAreas);

/// Returns the frame after its `edges` were dragged by `distance`: 16:9, at least the smallest
/// size, and with the opposite edges where they were.
[[nodiscard]] QRectF playerFrameDragged(const QRectF& frame, Qt::Edges edges,
                                        const QPointF& distance);

/// Returns the edges that a press at `position` resizes: those of a band of 6 points along the
/// inside of a window of this size, two at its corners. None elsewhere.
[[nodiscard]] Qt::Edges edgesAt(const QPointF& position, const QSizeF& size);

} // namespace orvane
