// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/StarButton.h"

#include "ui/theme/Contrast.h"
#include "ui/theme/SystemColors.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionFocusRect>

#include <cmath>
#include <numbers>

namespace orvane {

namespace {

constexpr int points = 5;
/// As a fraction of the outer radius.
constexpr double innerRadius = 0.42;

QPainterPath star(QPointF centre, double radius) {
    QPolygonF corners;
    for (int i = 0; i < 2 * points; ++i) {
        const double angle = std::numbers::pi * (i / double(points) - 0.5);
        const double length = i % 2 == 0 ? radius : radius * innerRadius;
        corners << centre + length * QPointF(std::cos(angle), std::sin(angle));
    }
    QPainterPath path;
    path.addPolygon(corners);
    path.closeSubpath();
    return path;
}

} // namespace

StarButton::StarButton(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setAttribute(Qt::WA_Hover);
}

void StarButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = std::min(width(), height()) / 2.0 - 2;
    const QColor hue = isChecked() || underMouse() ? SystemColors::orange
                                                   : palette().color(QPalette::PlaceholderText);
    const QColor color = readableShade(hue, windowBackgrounds(palette()), glyphContrast);
    painter.setPen(QPen(color, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(isChecked() ? QBrush(color) : QBrush(Qt::NoBrush));
    painter.drawPath(star(QRectF(rect()).center(), radius));
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

} // namespace orvane
