// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/CachedPixmap.h"

#include <QPainter>
#include <QWidget>

namespace orvane {

const QPixmap& CachedPixmap::of(const QWidget& widget, const QString& shown, const Draw& draw) {
    const qreal scale = widget.devicePixelRatioF();
    const Grounds grounds{.shown = shown,
                          .pixels = (QSizeF(widget.size()) * scale).toSize(),
                          .scale = scale,
                          .font = widget.font(),
                          .colours = widget.palette().cacheKey()};
    if (grounds != m_grounds) {
        m_grounds = grounds;
        m_picture = QPixmap(grounds.pixels);
        m_picture.setDevicePixelRatio(scale);
        m_picture.fill(Qt::transparent);
        QPainter painter(&m_picture);
        painter.setFont(grounds.font);
        draw(painter);
    }
    return m_picture;
}

} // namespace orvane
