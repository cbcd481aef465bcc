// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/Spinner.h"

#include <QPainter>

#include <chrono>

namespace orvane {

namespace {

constexpr int spokes = 12;
constexpr std::chrono::milliseconds stepTime{80};

} // namespace

Spinner::Spinner(const QColor& color, QWidget* parent) : QWidget(parent), m_color(color) {
    m_timer.setInterval(stepTime);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_step = (m_step + 1) % spokes;
        update();
    });
    hide();
}

void Spinner::start() {
    show();
}

void Spinner::stop() {
    hide();
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = std::min(width(), height()) / 2.0;
    painter.translate(QRectF(rect()).center());
    const QColor base = m_color.isValid() ? m_color : palette().color(QPalette::WindowText);
    QPen pen(base, radius * 0.16);
    pen.setCapStyle(Qt::RoundCap);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        const int age = (m_step - spoke + spokes) % spokes;
        QColor color = base;
        color.setAlphaF(1.0F - 0.85F * static_cast<float>(age) / spokes);
        pen.setColor(color);
        painter.setPen(pen);
        painter.save();
        painter.rotate(360.0 * spoke / spokes);
        painter.drawLine(QPointF(0, -radius * 0.5), QPointF(0, -radius * 0.88));
        painter.restore();
    }
}

void Spinner::showEvent(QShowEvent*) {
    m_timer.start();
}

void Spinner::hideEvent(QHideEvent*) {
    m_timer.stop();
}

} // namespace orvane
