// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QPixmap>
#include <QString>

#include <functional>

class QPainter;
class QWidget;

namespace orvane {

/// Caches what a widget above the video draws until it would look different. Such a widget is
/// repainted with every video frame, and laying out text or rendering an emoji takes longer than
/// scaling the frame itself. A member of the widget; main thread.
class CachedPixmap {
public:
    using Draw = std::function<void(QPainter&)>;

    /// Returns a pixmap of the widget's size, transparent where nothing is drawn. Calls `draw` if
    /// the widget's size, scale, font or palette or `content` differ from those of the last call;
    /// `content` stands for everything else that the drawing depends on.
    [[nodiscard]] const QPixmap& get(const QWidget& widget, const QString& content,
                                     const Draw& draw);

private:
    /// What the cached drawing depends on.
    struct Key {
        QString content;
        QSize pixels;
        qreal scale = 0;
        QFont font;
        qint64 palette = 0;

        bool operator==(const Key&) const = default;
    };

    Key m_key;
    QPixmap m_pixmap;
};

} // namespace orvane
