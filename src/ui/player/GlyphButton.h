// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/CachedPixmap.h"

#include <QAbstractButton>
#include <QColor>

namespace orvane {

/// A flat button with one glyph and a background only under the pointer. Main thread. Its
/// accessible name says what it does. It takes no keyboard focus, as every action has a shortcut.
class GlyphButton final : public QAbstractButton {
    Q_OBJECT

public:
    /// `tint` is the colour of glyphs other than emoji.
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
