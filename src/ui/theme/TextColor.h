// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

class QWidget;

namespace orvane {

/// Gives the text of a label or a button a hue, in the shade that can be read on its background;
/// the shade follows the widget's palette. `tint` is a translucent colour drawn behind the text.
/// Replaces the hue of an earlier call. Main thread.
void setTextColor(QWidget& widget, const QColor& hue, const QColor& tint = Qt::transparent);

/// Gives the text the palette's colour again.
void clearTextColor(QWidget& widget);

} // namespace orvane
