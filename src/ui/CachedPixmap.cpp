// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/CachedPixmap.h"

#include <QPainter>
#include <QWidget>

namespace orvane {

const QPixmap& CachedPixmap::get(const QWidget& widget, const QString& content, const Draw& draw) {
    const qreal scale = widget.devicePixelRatioF();
    const Key key{.content = content,
                  .pixels = (QSizeF(widget.size()) * scale).toSize(),
                  .scale = scale,
                  .font = widget.font(),
                  .palette = widget.palette().cacheKey()};
    if (key != m_key) {
        m_key = key;
        m_pixmap = QPixmap(key.pixels);
        m_pixmap.setDevicePixelRatio(scale);
        m_pixmap.fill(Qt::transparent);
        QPainter painter(&m_pixmap);
        painter.setFont(key.font);
        draw(painter);
    }
    return m_pixmap;
}

} // namespace orvane
