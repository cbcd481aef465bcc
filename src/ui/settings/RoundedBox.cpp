// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/RoundedBox.h"

#include <QPainter>

namespace orvane {

RoundedBox::RoundedBox(const Look& look, QWidget* parent) : QWidget(parent), m_look(look) {}

void RoundedBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(m_look.border.isValid() ? QPen(m_look.border, 1) : QPen(Qt::NoPen));
    painter.setBrush(m_look.background);
    const double inset = m_look.border.isValid() ? 0.5 : 0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), m_look.radius,
                            m_look.radius);
}

} // namespace orvane
