// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/CloseButton.h"

#include "language/Translation.h"

#include "ui/theme/SystemColors.h"

#include <QPainter>

namespace orvane {

using namespace Qt::StringLiterals;

CloseButton::CloseButton(QWidget* parent) : QAbstractButton(parent) {
    setToolTip(translated("Player", "Close player"));
    setAccessibleName(toolTip());
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

void CloseButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(underMouse() ? 1.0 : 0.35);
    painter.drawPixmap(
        0, 0,
        m_picture.get(*this, isDown() ? u"down"_s : u"up"_s, [this](QPainter& p) { draw(p); }));
}

void CloseButton::draw(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF circle = QRectF(rect()).adjusted(1, 1, -1, -1);
    painter.setPen(QPen(QColor::fromRgbF(1, 1, 1, 0.7F), 1));
    painter.setBrush(isDown() ? SystemColors::red : QColor(60, 60, 60));
    painter.drawEllipse(circle);
    const QRectF cross = circle.adjusted(4, 4, -4, -4);
    painter.setPen(QPen(Qt::white, 1.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.topRight(), cross.bottomLeft());
}

} // namespace orvane
