// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <QString>

#include <optional>

class QFont;

namespace orvane {

/// Where the player window goes when nothing is known: 480 × 314 in the lower right corner of the
/// usable area, 20 points from both edges. Points, y downwards.
[[nodiscard]] QRectF defaultPlayerFrame(const QRectF& usableArea);

/// The saved frame as it is, or the default one where there is none or it has no size.
[[nodiscard]] QRectF initialPlayerFrame(const std::optional<QRectF>& saved,
                                        const QRectF& usableArea);

/// `text` broken into at most `maximumLines` lines of `width` points, the last of them cut with an
/// ellipsis where more would follow. Lines are separated by line feeds.
[[nodiscard]] QString fittedText(const QString& text, const QFont& font, double width,
                                 int maximumLines);

} // namespace orvane
