// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/player/GlyphButton.h"

#include "ui/player/BarColors.h"
#include "ui/theme/Contrast.h"
#include "ui/theme/SystemColors.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int glyphPixelSize = 18;
constexpr double cornerRadius = 4;

} // namespace

GlyphButton::GlyphButton(const QColor& tint, QWidget* parent)
    : QAbstractButton(parent), m_tint(tint) {
    QFont glyphs = font();
    // Symbol fonts have monochrome glyphs for some emoji and would be preferred otherwise.
    glyphs.setFamilies({u"Noto Color Emoji"_s, glyphs.family()});
    glyphs.setPixelSize(glyphPixelSize);
    setFont(glyphs);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

void GlyphButton::setGlyph(const QString& glyph, const QString& accessibleName) {
    setText(glyph);
    setAccessibleName(accessibleName);
}

void GlyphButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? SystemColors::barPressed : SystemColors::barHover);
        painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
    }
    painter.drawPixmap(0, 0,
                       m_glyph.get(*this, text(), [this](QPainter& glyph) { drawGlyph(glyph); }));
}

void GlyphButton::drawGlyph(QPainter& painter) const {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    // Centred by the painted area: symbol fonts place glyphs anywhere between their lines.
    const QRectF ink = QFontMetricsF(font(), this).tightBoundingRect(text());
    const QPointF place = QRectF(rect()).center() - ink.center();
    painter.setPen(readableShade(m_tint, barBackgrounds(), glyphContrast));
    painter.drawText(QPointF(std::round(place.x()), std::round(place.y())), text());
}

} // namespace orvane
