// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/LiveIndicator.h"

#include "ui/player/BarColors.h"
#include "ui/theme/Contrast.h"
#include "ui/theme/SystemColors.h"

#include <QPainter>

#include <cmath>
#include <utility>

namespace orvane {

namespace {

constexpr double dotSize = 8;
/// Twenty steps a second look smooth on a dot of this size.
constexpr std::chrono::milliseconds stepTime{50};
constexpr std::chrono::milliseconds pulseTime{1000};
constexpr double dimmest = 0.3;

} // namespace

double pulseOpacity(std::chrono::milliseconds shownFor) {
    if (shownFor < pulseTime)
        return 1;
    const double phase = static_cast<double>((shownFor % pulseTime).count()) / pulseTime.count();
    return dimmest + (1 - dimmest) * std::abs(1 - 2 * phase);
}

LiveIndicator::LiveIndicator(QWidget* parent) : QWidget(parent) {
    m_pulseTimer.setInterval(stepTime);
    connect(&m_pulseTimer, &QTimer::timeout, this, qOverload<>(&QWidget::update));
}

void LiveIndicator::setLive(bool isLive) {
    if (isLive == std::exchange(m_isLive, isLive))
        return;
    if (isVisible())
        pulse();
    update();
}

void LiveIndicator::pulse() {
    m_shownFor.start();
    if (m_isLive)
        m_pulseTimer.start();
    else
        m_pulseTimer.stop();
}

void LiveIndicator::paintEvent(QPaintEvent*) {
    const QColor color = m_isLive ? SystemColors::red : SystemColors::gray;
    QPainter painter(this);
    if (m_isLive)
        painter.setOpacity(pulseOpacity(std::chrono::milliseconds(m_shownFor.elapsed())));
    painter.drawPixmap(0, 0, m_dot.get(*this, color.name(), [this, &color](QPainter& dot) {
        dot.setRenderHint(QPainter::Antialiasing);
        dot.setPen(Qt::NoPen);
        dot.setBrush(readableShade(color, barBackgrounds(), glyphContrast));
        dot.drawEllipse(QRectF(rect()).center(), dotSize / 2, dotSize / 2);
    }));
}

void LiveIndicator::showEvent(QShowEvent*) {
    pulse();
}

void LiveIndicator::hideEvent(QHideEvent*) {
    m_pulseTimer.stop();
}

} // namespace orvane
