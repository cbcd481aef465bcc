// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/Translation.h"

#include <QRect>

namespace orvane {

/// Positions that are worked out by hand are those of a left-to-right interface. Returns where
/// `frame` is within a parent of this width: there, or in a right-to-left interface its reflection
/// about the parent's middle.
[[nodiscard]] inline QRect mirrored(const QRect& frame, int parentWidth) {
    return isRightToLeftInterface()
               ? frame.translated(parentWidth - frame.width() - 2 * frame.x(), 0)
               : frame;
}

} // namespace orvane
