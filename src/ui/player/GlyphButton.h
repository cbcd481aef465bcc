// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/CachedPixmap.h"

#include <QAbstractButton>
#include <QColor>

namespace orvane {

/// A flat button with one glyph, which shows a surface only under the pointer. Main thread. Its
/// accessible name says what it does; the keyboard focus passes it by, for the keys have their own
/// ways to do the same.
class GlyphButton final : public QAbstractButton {
    Q_OBJECT

public:
    /// `tint` colours glyphs that are no emoji, which have colours of their own.
    GlyphButton(const QColor& tint, QWidget* parent);

    void setGlyph(const QString& glyph, const QString& accessibleName);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void drawGlyph(QPainter& painter) const;

    QColor m_tint;
    CachedPixmap m_glyph;
};

} // namespace orvane
