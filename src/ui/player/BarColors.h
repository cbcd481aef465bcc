// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/theme/Contrast.h"
#include "ui/theme/SystemColors.h"

namespace orvane {

/// Returns the colours behind the glyphs of the control bar: the bar over a black and over a white
/// picture, each with and without the pointer on a button. Any thread.
[[nodiscard]] inline QList<QColor> barBackgrounds() {
    const QList<QColor> bar = tinted({Qt::black, Qt::white}, SystemColors::bar);
    return bar + tinted(bar, SystemColors::barHover) + tinted(bar, SystemColors::barPressed);
}

} // namespace orvane
