// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QPixmap>
#include <QString>

#include <functional>

class QPainter;
class QWidget;

namespace orvane {

/// What a widget that lies over the video draws, kept until it would look different. The video has
/// such a widget painted with each of its pictures, and laying out a text or unpacking an emoji
/// takes longer than scaling the picture itself. A member of the widget; main thread.
class CachedPixmap {
public:
    using Draw = std::function<void(QPainter&)>;

    /// A picture of the size of the widget, transparent where nothing is drawn. `draw` is called
    /// when the widget's size, scale, font or colours, or `shown`, are not those of the last call;
    /// `shown` stands for whatever else the drawing depends on.
    [[nodiscard]] const QPixmap& of(const QWidget& widget, const QString& shown, const Draw& draw);

private:
    /// Of one drawing: what it depended on.
    struct Grounds {
        QString shown;
        QSize pixels;
        qreal scale = 0;
        QFont font;
        qint64 colours = 0;

        bool operator==(const Grounds&) const = default;
    };

    Grounds m_grounds;
    QPixmap m_picture;
};

} // namespace orvane
